// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZPluginAudioDocument.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace orvane
{

/// A document with factory presets, which a host shows as programs, and with four memories, A to D,
/// for quick comparison. Memories are not saved. [interface thread, or the host's thread under the
/// interface lock]
class ZPluginPresetsAudioDocument : public ZPluginAudioDocument, public virtual ZAudioDocument
{
public:
    static constexpr std::int32_t kMemories = 4;

    /// Reads a `doctype` as ZAudioDocument does, and the factory presets under `presets`. [setup]
    ZPluginPresetsAudioDocument(const boost::shared_ptr<ZXMLElement>& xml,
                                ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// PLUGINSAVETOPRESETA to D, PLUGINRECALLPRESETA to D: SaveToMemory, RecallMemory. Other
    /// messages go to ZPluginAudioDocument.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// False for the recall of an empty memory.
    [[nodiscard]] bool CanHandle(std::int32_t messageId) const override;

    /// Returns the name of a factory preset, which lives as long as the document; "Init" for an
    /// index out of range.
    [[nodiscard]] virtual const char* GetPresetName(std::int32_t index) const;
    /// Loads a factory preset; ignores an index out of range. Throws what LoadPreset throws.
    virtual void LoadFactoryPreset(std::int32_t index);

    [[nodiscard]] std::int32_t GetPresetCount() const;
    /// Returns a copy of the `preset`; null for an index out of range.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> GetPresetCopy(std::int32_t index) const;

    /// Saves the document to a memory, 0 for A to 3 for D; ignores any other index. Throws what
    /// SavePreset throws.
    void SaveToMemory(std::int32_t index);
    /// Loads a memory, then sets its element of PresetAActive to PresetDActive to 1 and the other
    /// three to 0. Ignores an empty memory and an index out of range. Throws what LoadPreset
    /// throws.
    void RecallMemory(std::int32_t index);

private:
    [[nodiscard]] bool HasPreset(std::int32_t index) const;
    void MarkActiveMemory(std::int32_t index);

    std::array<boost::shared_ptr<ZXMLElement>, kMemories> mMemories;  // null until saved
    std::vector<boost::shared_ptr<ZXMLElement>> mFactoryPresets;
};

}  // namespace orvane
