// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZAudioDocument.h"

#include <string_view>

namespace orvane
{

/// An audio document whose preset files are of the plug-in's type. [interface thread]
class ZPluginAudioDocument : public virtual ZAudioDocument
{
public:
    /// As ZAudioDocument. [setup]
    ZPluginAudioDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZPRESETSAVE, ZPRESETLOAD: as ZAudioDocument, except that a load does not check the version
    /// of the file and the networks do not get the message. Other messages go to ZAudioDocument.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

protected:
    /// Lets the host be told that the user has loaded a state.
    void MarkStateChanged();
};

}  // namespace orvane
