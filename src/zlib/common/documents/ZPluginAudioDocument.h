// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZAudioDocument.h"

#include <boost/smart_ptr/shared_ptr.hpp>

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
    /// of the file and the networks do not get the message. ZCOPY copies the preset's text to the
    /// clipboard, ZPASTE loads the one that is there. Other messages go to ZAudioDocument.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Copies the text of a preset file to the clipboard. Reports a failure in a message box.
    void CopyPreset();
    /// Loads the preset that the clipboard holds as text. Says in a message box when there is none,
    /// and when it is damaged; the state is then as before. The document may be gone when the call
    /// returns, since it waits for the program that has copied the text.
    void PastePreset();

protected:
    /// Lets the host be told that the user has loaded a state.
    void MarkStateChanged();

private:
    void LoadOrRestore(const boost::shared_ptr<ZXMLElement>& preset);
};

}  // namespace orvane
