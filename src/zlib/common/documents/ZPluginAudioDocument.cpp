// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZPluginAudioDocument.h"

#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <utility>

namespace orvane
{

namespace
{

constexpr const char* kDescription = "Orvane Plug-In Preset";

boost::shared_ptr<ZXMLElement> presetOf(const ZXMLDocument& file)
{
    return file.GetChild("preset");
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
    default:
        ZAudioDocument::HandleZMessage(std::move(message));
    }
}

void ZPluginAudioDocument::MarkStateChanged()
{
    if (auto* const plugin = dynamic_cast<ZPlugin*>(GetApp()))
        plugin->MarkStateChanged();
}

}  // namespace orvane
