// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZPluginAudioDocument.h"

#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZClipboard.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

constexpr const char* kDescription = "Orvane Plug-In Preset";
constexpr const char* kNoCopy = "Could not copy settings";
constexpr const char* kNoPaste = "Could not paste settings";

boost::shared_ptr<ZXMLElement> presetOf(const ZXMLDocument& file)
{
    return file.GetChild("preset");
}

/// Returns the preset in a text of any origin; null when the text is something else.
boost::shared_ptr<ZXMLElement> presetIn(const std::string& text)
{
    const auto size = static_cast<std::int64_t>(text.size());
    ZXMLDocument::CheckSize(size);
    const auto preset = presetOf(ZXMLDocument(text.data(), static_cast<std::int32_t>(text.size())));
    return preset && preset->GetChild("document") ? preset : nullptr;
}

}  // namespace

ZPluginAudioDocument::ZPluginAudioDocument(const boost::shared_ptr<ZXMLElement>& xml,
                                           ZApplication* application)
    : ZAudioDocument(xml, application)
{
}

bool ZPluginAudioDocument::IsKindOf(std::string_view className) const
{
    return className == "ZPluginAudioDocumentClass" || ZAudioDocument::IsKindOf(className);
}

const char* ZPluginAudioDocument::GetClassName() const
{
    return "ZPluginAudioDocumentClass";
}

void ZPluginAudioDocument::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZPRESETSAVE:
        return SavePresetFile(kDescription, *message);
    case ZPRESETLOAD:
        if (LoadPresetFile(kDescription, kDescription, &presetOf, *message))
            MarkStateChanged();
        return;
    case ZCOPY:
        return CopyPreset();
    case ZPASTE:
        return PastePreset();
    default:
        ZAudioDocument::HandleZMessage(std::move(message));
    }
}

void ZPluginAudioDocument::CopyPreset()
{
    ZXMLElement saved;
    SavePreset(saved);
    ZClipboard* const clipboard = ZClipboard::Get();
    if (!clipboard || !clipboard->Write(std::string(saved.GetText())))
        ZMessageBox::Show(ZMessageBox::kNotice, kNoCopy, "The clipboard cannot be reached.");
}

void ZPluginAudioDocument::PastePreset()
{
    ZClipboard* const clipboard = ZClipboard::Get();
    const auto life = GetLife();
    const auto text = clipboard ? clipboard->Read(GetApp()) : std::nullopt;
    if (life.expired())
        return;
    if (!text)
        return ZMessageBox::Show(ZMessageBox::kNotice, kNoPaste,
                                 "The clipboard is empty, or does not hold text.");
    try {
        const auto preset = presetIn(*text);
        if (!preset)
            return ZMessageBox::Show(ZMessageBox::kNotice, kNoPaste,
                                     "The clipboard does not hold settings of this plug-in.");
        LoadOrRestore(preset);
        MarkStateChanged();
    } catch (const ZException& failure) {
        const bool isTooLarge = failure.GetCode() == ZException::kTooLarge;
        ZMessageBox::Show(ZMessageBox::kNotice, kNoPaste,
                          isTooLarge ? failure.GetMessage()
                                     : ZString("The settings in the clipboard are damaged."));
    }
}

// A damaged preset is loaded up to the fault.
void ZPluginAudioDocument::LoadOrRestore(const boost::shared_ptr<ZXMLElement>& preset)
{
    ZXMLElement present;
    SavePreset(present);
    try {
        LoadPreset(preset);
    } catch (...) {
        LoadPreset(present.GetChild("preset"));
        throw;
    }
}

void ZPluginAudioDocument::MarkStateChanged()
{
    if (auto* const plugin = dynamic_cast<ZPlugin*>(GetApp()))
        plugin->MarkStateChanged();
}

}  // namespace orvane
