// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZPluginPresetsAudioDocument.h"

#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::array<const char*, ZPluginPresetsAudioDocument::kMemories> kActiveNames{
    "PresetAActive", "PresetBActive", "PresetCActive", "PresetDActive"};

constexpr std::array<std::int32_t, ZPluginPresetsAudioDocument::kMemories> kRecalls{
    PLUGINRECALLPRESETA, PLUGINRECALLPRESETB, PLUGINRECALLPRESETC, PLUGINRECALLPRESETD};

bool isMemory(std::int32_t index)
{
    return index >= 0 && index < ZPluginPresetsAudioDocument::kMemories;
}

}  // namespace

ZPluginPresetsAudioDocument::ZPluginPresetsAudioDocument(const boost::shared_ptr<ZXMLElement>& xml,
                                                         ZApplication* application)
    : ZAudioDocument(xml, application)
    , ZPluginAudioDocument(xml, application)
{
    const auto presets = xml->GetChild("presets");
    const std::int32_t count = presets ? presets->GetChildCount("preset") : 0;
    for (std::int32_t i = 0; i < count; ++i)
        mFactoryPresets.push_back(presets->GetChild("preset", i));
}

bool ZPluginPresetsAudioDocument::IsKindOf(std::string_view className) const
{
    return className == "ZPluginPresetsAudioDocumentDocumentClass" ||
           ZPluginAudioDocument::IsKindOf(className);
}

const char* ZPluginPresetsAudioDocument::GetClassName() const
{
    return "ZPluginPresetsAudioDocumentDocumentClass";
}

void ZPluginPresetsAudioDocument::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case PLUGINSAVETOPRESETA:
        return SaveToMemory(0);
    case PLUGINRECALLPRESETA:
        return RecallMemory(0);
    case PLUGINSAVETOPRESETB:
        return SaveToMemory(1);
    case PLUGINRECALLPRESETB:
        return RecallMemory(1);
    case PLUGINSAVETOPRESETC:
        return SaveToMemory(2);
    case PLUGINRECALLPRESETC:
        return RecallMemory(2);
    case PLUGINSAVETOPRESETD:
        return SaveToMemory(3);
    case PLUGINRECALLPRESETD:
        return RecallMemory(3);
    default:
        ZPluginAudioDocument::HandleZMessage(std::move(message));
    }
}

bool ZPluginPresetsAudioDocument::CanHandle(std::int32_t messageId) const
{
    const auto recall = std::ranges::find(kRecalls, messageId);
    if (recall == kRecalls.end())
        return ZPluginAudioDocument::CanHandle(messageId);
    return mMemories[static_cast<std::size_t>(recall - kRecalls.begin())] != nullptr;
}

bool ZPluginPresetsAudioDocument::HasPreset(std::int32_t index) const
{
    return index >= 0 && index < GetPresetCount();
}

std::int32_t ZPluginPresetsAudioDocument::GetPresetCount() const
{
    return static_cast<std::int32_t>(mFactoryPresets.size());
}

const char* ZPluginPresetsAudioDocument::GetPresetName(std::int32_t index) const
{
    if (!HasPreset(index))
        return "Init";
    const char* const name = mFactoryPresets[static_cast<std::size_t>(index)]->GetAttribute("name");
    return name ? name : "";
}

void ZPluginPresetsAudioDocument::LoadFactoryPreset(std::int32_t index)
{
    if (HasPreset(index))
        LoadPreset(mFactoryPresets[static_cast<std::size_t>(index)]);
}

boost::shared_ptr<ZXMLElement> ZPluginPresetsAudioDocument::GetPresetCopy(std::int32_t index) const
{
    if (!HasPreset(index))
        return nullptr;
    return boost::make_shared<ZXMLElement>(*mFactoryPresets[static_cast<std::size_t>(index)]);
}

void ZPluginPresetsAudioDocument::SaveToMemory(std::int32_t index)
{
    if (!isMemory(index))
        return;
    const auto saved = boost::make_shared<ZXMLElement>();
    SavePreset(*saved);
    mMemories[static_cast<std::size_t>(index)] = saved;
}

void ZPluginPresetsAudioDocument::RecallMemory(std::int32_t index)
{
    if (!isMemory(index))
        return;
    const auto saved = mMemories[static_cast<std::size_t>(index)];
    const auto preset = saved ? saved->GetChild("preset") : nullptr;
    if (!preset)
        return;
    assert(preset->IsNamed("preset"));
    LoadPreset(preset);
    MarkActiveMemory(index);
    MarkStateChanged();
}

void ZPluginPresetsAudioDocument::MarkActiveMemory(std::int32_t index)
{
    assert(isMemory(index));
    for (std::int32_t i = 0; i < kMemories; ++i)
        if (const auto element = FindElement(kActiveNames[static_cast<std::size_t>(i)]))
            element->SetDiscrete(i == index ? 1 : 0, false);
}

}  // namespace orvane
