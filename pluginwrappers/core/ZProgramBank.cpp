// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/ZProgramBank.h"

#include "zlib/common/documents/ZPluginPresetsAudioDocument.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <utility>

namespace orvane
{

namespace
{

constexpr const char* kProgram = "VST_Program";

boost::shared_ptr<ZXMLElement> makeProgram(const boost::shared_ptr<ZXMLElement>& preset,
                                           std::int32_t number)
{
    auto program = boost::make_shared<ZXMLElement>(kProgram);
    program->AddAttribute("Number", number);
    if (preset)
        program->AddChild(*preset);
    return program;
}

/// Returns a program of a chunk, null when there is none. A line feed at the start of its text is
/// left out, since writing the program adds it again: a bank that is loaded and saved must not
/// grow.
boost::shared_ptr<ZXMLElement> readProgram(const ZXMLDocument& chunk, std::int32_t index)
{
    auto program = chunk.GetChild(kProgram, index);
    if (!program || !program->GetText().starts_with('\n'))
        return program;
    auto trimmed = boost::make_shared<ZXMLElement>(kProgram);
    for (std::int32_t i = 0; i < program->GetAttributeCount(); ++i)
        trimmed->AddAttribute(program->GetAttributeName(i), program->GetAttributeValue(i));
    const std::string_view text = program->GetText().substr(1);
    trimmed->AppendBytes(text.data(), static_cast<std::int32_t>(text.size()));
    return trimmed;
}

const ZPluginPresetsAudioDocument* presetsOf(const ZAudioDocument* document)
{
    return dynamic_cast<const ZPluginPresetsAudioDocument*>(document);
}

}  // namespace

ZProgramBank::ZProgramBank(ZAudioDocument* document)
    : mDocument(document)
    , mPresets(presetsOf(document))
{
    const std::int32_t presets = mPresets != nullptr ? mPresets->GetPresetCount() : 0;
    for (std::int32_t i = 0; i < presets; ++i)
        mPrograms.push_back(makeProgram(mPresets->GetPresetCopy(i), i));
    if (mPrograms.empty())
        mPrograms.push_back(nullptr);
    assert(mPrograms.size() == static_cast<std::size_t>(CountOf(document)));
}

std::int32_t ZProgramBank::CountOf(const ZAudioDocument* document)
{
    const auto* const presets = presetsOf(document);
    return presets != nullptr ? std::max(presets->GetPresetCount(), 1) : 1;
}

ZProgramBank::Program& ZProgramBank::Current()
{
    assert(mCurrent >= 0 && static_cast<std::size_t>(mCurrent) < mPrograms.size());
    return mPrograms[static_cast<std::size_t>(mCurrent)];
}

ZString ZProgramBank::GetName() const
{
    return mPresets != nullptr ? ZString(mPresets->GetPresetName(mCurrent)) : mName;
}

std::optional<ZString> ZProgramBank::GetName(std::int32_t index) const
{
    if (mPresets == nullptr || index < 0 || index >= mPresets->GetPresetCount())
        return std::nullopt;
    return ZString(mPresets->GetPresetName(index));
}

void ZProgramBank::SetCurrent(std::int32_t index)
{
    if (mDocument == nullptr || index < 0 || static_cast<std::size_t>(index) >= mPrograms.size())
        return;
    const Program present = ExtractProgram();
    Current() = present;
    mCurrent = index;
    // Copied, since the load can notify the host, which may load other programs meanwhile.
    const Program program = Current();
    LoadProgram(program, present);
}

std::string ZProgramBank::Save(Extent extent)
{
    if (mDocument == nullptr)
        return {};
    Current() = ExtractProgram();
    ZXMLElement chunk("VST_Chunk");
    if (extent == Extent::kCurrent) {
        chunk.AddChild(*Current());
    } else {
        for (const Program& program : mPrograms)
            if (program)
                chunk.AddChild(*program);
    }
    return std::string(chunk.GetText());
}

void ZProgramBank::Load(std::string_view text, Extent extent)
{
    if (mDocument == nullptr)
        return;
    ZXMLDocument::CheckSize(static_cast<std::int64_t>(text.size()));
    const ZXMLDocument chunk(text.data(), static_cast<std::int32_t>(text.size()));
    // Before mPrograms is copied, since it can notify the host, which may load programs.
    const Program present = ExtractProgram();
    Programs loaded = mPrograms;
    if (extent == Extent::kCurrent) {
        loaded[static_cast<std::size_t>(mCurrent)] = readProgram(chunk, 0);
    } else {
        const auto given = static_cast<std::size_t>(chunk.GetChildCount(kProgram));
        for (std::size_t i = 0; i < std::min(given, loaded.size()); ++i)
            loaded[i] = readProgram(chunk, static_cast<std::int32_t>(i));
    }
    LoadProgram(loaded[static_cast<std::size_t>(mCurrent)], present);
    mPrograms = std::move(loaded);
}

ZProgramBank::Program ZProgramBank::ExtractProgram() const
{
    assert(mDocument != nullptr);
    Program program = makeProgram(nullptr, mCurrent);
    mDocument->SavePreset(*program);
    return program;
}

// Restores the present state when program is damaged, since a part of it has then been loaded.
void ZProgramBank::LoadProgram(const Program& program, const Program& present)
{
    assert(mDocument != nullptr && present);
    try {
        mDocument->LoadPreset(program);
    } catch (...) {
        if (program)
            mDocument->LoadPreset(present);
        throw;
    }
}

}  // namespace orvane
