// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZAudioDocument.h"

#include <string_view>

namespace orvane
{

/// A document with the plug-in's own kind of preset file. [interface thread]
class ZPluginAudioDocument : public virtual ZAudioDocument
{
public:
    /// As ZAudioDocument. [setup]
    ZPluginAudioDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZPRESETSAVE, ZPRESETLOAD: as ZAudioDocument, but a load ends here and the networks do not
    /// hear of it, and the version of the file does not count. The rest as ZAudioDocument.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
};

}  // namespace orvane
