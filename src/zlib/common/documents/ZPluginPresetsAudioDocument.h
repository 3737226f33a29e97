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

/// A document with the factory presets of its type, which a host shows as programs, and with four
/// memories, A to D, for quick comparison. Memories last as long as the document and are never
/// saved. [interface thread, or the thread on which the host sets programs and state]
class ZPluginPresetsAudioDocument : public ZPluginAudioDocument, public virtual ZAudioDocument
{
public:
    static constexpr std::int32_t kMemories = 4;

    /// As ZAudioDocument; also takes each `preset` under `presets`, in order. [setup]
    ZPluginPresetsAudioDocument(const boost::shared_ptr<ZXMLElement>& xml,
                                ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// PLUGINSAVETOPRESETA to D, PLUGINRECALLPRESETA to D: the memories. The rest as
    /// ZPluginAudioDocument.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// The name of a factory preset, which lives as long as the document; "Init" when there is
    /// none at that index.
    [[nodiscard]] virtual const char* GetPresetName(std::int32_t index) const;
    /// Does nothing when there is none at that index. Throws as LoadPreset.
    virtual void LoadFactoryPreset(std::int32_t index);

    [[nodiscard]] std::int32_t GetPresetCount() const;
    /// A copy of the `preset`; null when there is none at that index.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> GetPresetCopy(std::int32_t index) const;

    /// Keeps the present state in a memory, 0 for A to 3 for D, in place of what it held. Any other
    /// index does nothing. Throws as SavePreset.
    void SaveToMemory(std::int32_t index);
    /// Loads what a memory holds and sets the one of PresetAActive to PresetDActive that fits. An
    /// empty memory, or any other index, does nothing. Throws as LoadPreset.
    void RecallMemory(std::int32_t index);

private:
    [[nodiscard]] bool HasPreset(std::int32_t index) const;
    void MarkActiveMemory(std::int32_t index);

    std::array<boost::shared_ptr<ZXMLElement>, kMemories> mMemories;  // null until saved
    std::vector<boost::shared_ptr<ZXMLElement>> mFactoryPresets;
};

}  // namespace orvane
