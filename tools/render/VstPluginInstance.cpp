// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/VstPluginInstance.h"

#include "pluginwrappers/interface/VstEvents.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "pluginwrappers/interface/WindowPicture.h"
#include "tools/render/Failure.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <vector>

namespace orvane
{

namespace
{

/// Bytes; plug-ins write more than the interface allows.
constexpr std::size_t kTextRoom = 256;

AEffect* opened(PluginLibrary::EntryProc entry, audioMasterCallback host, const std::string& file)
{
    AEffect* const effect = entry(host);
    if (!effect)
        fail("the plug-in in {} does not start", file);
    if (effect->magic != kEffectMagic)
        fail("{} is no plug-in: it starts with no effect", file);
    return effect;
}

/// The four characters of a unique id, quoted; empty unless all four are printable.
std::string characters(std::uint32_t id)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto c = static_cast<unsigned char>(id >> shift & 0xFFu);
        if (c < ' ' || c > '~')
            return {};
        text += static_cast<char>(c);
    }
    return " '" + text + "'";
}

VstMidiEvent recordOf(const MidiEvent& event)
{
    VstMidiEvent record{};
    record.type = kVstMidiType;
    record.byteSize = static_cast<std::int32_t>(sizeof record - 2 * sizeof(std::int32_t));
    std::memcpy(record.midiData, event.bytes.data(), event.bytes.size());
    return record;
}

}  // namespace

void VstPluginInstance::Closer::operator()(AEffect* effect) const
{
    effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0f);
}

VstPluginInstance::VstPluginInstance(const std::filesystem::path& library)
    : mFile(library)
    , mLibrary(library)
    , mEffect(opened(mLibrary.Entry(), hostCallback, library.string()))
{
    mEffect->resvd1 = reinterpret_cast<std::intptr_t>(this);
    RequireStereo();
    Ask(effOpen);
}

VstPluginInstance::~VstPluginInstance()
{
    if (mIsOn)
        Ask(effMainsChanged, 0, 0);
}

void VstPluginInstance::RequireStereo() const
{
    if (mEffect->numInputs != kChannels || mEffect->numOutputs != kChannels)
        fail("the plug-in in {} has {} inputs and {} outputs: two of "
             "each are needed",
             mFile.string(), mEffect->numInputs, mEffect->numOutputs);
    if (!(mEffect->flags & effFlagsCanReplacing) || !mEffect->processReplacing)
        fail("the plug-in in {} gives no output of its own: it only "
             "adds to another",
             mFile.string());
}

std::intptr_t VstPluginInstance::hostCallback(AEffect* effect, std::int32_t opcode,
                                              std::int32_t /*index*/, std::intptr_t /*value*/,
                                              void* ptr, float /*opt*/)
{
    // Before the entry function returns, only the version is answered: resvd1 is not set yet.
    if (!effect || effect->resvd1 == 0)
        return opcode == audioMasterVersion ? kVstVersion : 0;
    auto& self = *reinterpret_cast<VstPluginInstance*>(effect->resvd1);
    if (opcode == audioMasterIOChanged)
        self.mLatency = std::max(effect->initialDelay, 0);
    return self.mHost.Answer(opcode, ptr);
}

std::intptr_t VstPluginInstance::Ask(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                     void* ptr, float opt) const
{
    return mEffect->dispatcher(mEffect.get(), opcode, index, value, ptr, opt);
}

std::string VstPluginInstance::AskText(std::int32_t opcode, std::int32_t index,
                                       std::intptr_t value) const
{
    std::array<char, kTextRoom> room{};
    Ask(opcode, index, value, room.data());
    room.back() = '\0';
    return room.data();
}

void VstPluginInstance::SetFormat(int rate, int blockFrames)
{
    assert(!mIsOn);
    mHost.SetFormat(rate, blockFrames);
    Ask(effSetSampleRate, 0, 0, nullptr, static_cast<float>(rate));
    Ask(effSetBlockSize, 0, blockFrames);
}

void VstPluginInstance::Start()
{
    assert(!mIsOn);
    mIsOn = true;
    Ask(effMainsChanged, 0, 1);
    mLatency = std::max(mEffect->initialDelay, 0);
}

void VstPluginInstance::Process(StereoBlock& input, StereoBlock& output, int first, int count)
{
    assert(mIsOn && first >= 0 && count > 0);
    assert(static_cast<std::size_t>(first + count) <= input[0].size());
    assert(static_cast<std::size_t>(first + count) <= output[0].size());
    std::array<float*, kChannels> inputs{input[0].data() + first, input[1].data() + first};
    std::array<float*, kChannels> outputs{output[0].data() + first, output[1].data() + first};
    mHost.MoveTo(mFrame);
    mEffect->processReplacing(mEffect.get(), inputs.data(), outputs.data(), count);
    mFrame += count;
}

void VstPluginInstance::Send(std::span<const MidiEvent> events)
{
    std::vector<VstMidiEvent> records;
    for (const MidiEvent& event : events)
        records.push_back(recordOf(event));
    // VstEvents ends in an array whose length is its first field, so its size is known at run time.
    std::vector<std::intptr_t> room(sizeof(VstEvents) / sizeof(std::intptr_t) + records.size());
    auto& list = *reinterpret_cast<VstEvents*>(room.data());
    VstEvent** const places = list.events;
    for (std::size_t i = 0; i < records.size(); ++i)
        places[i] = reinterpret_cast<VstEvent*>(&records[i]);
    list.numEvents = static_cast<std::int32_t>(records.size());
    Ask(effProcessEvents, 0, 0, &list);
}

std::string VstPluginInstance::ParameterName(int index) const
{
    return AskText(effGetParamName, index);
}

std::string VstPluginInstance::ParameterText(int index) const
{
    return AskText(effGetParamDisplay, index);
}

float VstPluginInstance::Parameter(int index) const
{
    assert(index >= 0 && index < ParameterCount());
    return mEffect->getParameter(mEffect.get(), index);
}

void VstPluginInstance::SetParameter(int index, float value)
{
    assert(index >= 0 && index < ParameterCount());
    assert(value >= 0.0f && value <= 1.0f);
    mEffect->setParameter(mEffect.get(), index, value);
}

std::string VstPluginInstance::ProgramName(int index) const
{
    constexpr std::intptr_t kAllCategories = -1;
    const std::string name = AskText(effGetProgramNameIndexed, index, kAllCategories);
    if (name.empty() && index == Ask(effGetProgram))
        return AskText(effGetProgramName);
    return name;
}

void VstPluginInstance::SetProgram(int index)
{
    assert(index >= 0 && index < ProgramCount());
    Ask(effBeginSetProgram);
    Ask(effSetProgram, 0, index);
    Ask(effEndSetProgram);
}

std::string VstPluginInstance::Chunk(Extent extent) const
{
    assert(HasChunks());
    void* data = nullptr;
    const std::intptr_t size = Ask(effGetChunk, extent == Extent::kProgram ? 1 : 0, 0, &data);
    if (!data || size <= 0)
        return {};
    return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
}

bool VstPluginInstance::SetChunk(std::string chunk, Extent extent)
{
    assert(HasChunks());
    const auto size = static_cast<std::intptr_t>(chunk.size());
    return Ask(effSetChunk, extent == Extent::kProgram ? 1 : 0, size, chunk.data()) != 0;
}

WindowPixels VstPluginInstance::Window(float scale) const
{
    WindowPicture picture{};
    if (Ask(effVendorSpecific, kVendorOrvane, kVendorWindowPicture, &picture, scale) != 1)
        fail("the plug-in in {} does not tell what its window shows", mFile.string());
    const auto count =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    return {picture.width, picture.height, {picture.pixels, picture.pixels + count}};
}

std::string VstPluginInstance::Name() const
{
    const std::string name = AskText(effGetEffectName);
    return name.empty() ? mFile.stem().string() : name;
}

std::string VstPluginInstance::Vendor() const
{
    return AskText(effGetVendorString);
}

std::string VstPluginInstance::Identity() const
{
    const auto id = static_cast<std::uint32_t>(mEffect->uniqueID);
    return fmt::format("{:08X}{}", id, characters(id));
}

}  // namespace orvane
