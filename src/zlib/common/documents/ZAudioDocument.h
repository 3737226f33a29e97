// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZDocument.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZAudioFormatElement;
class ZBay;
class ZXMLDocument;

/// A document that owns signal networks, whose elements hang in its tree. The networks are built
/// and prepared with the document. A preset is the document as XML; loading one pours its values
/// into the elements that stand, and never builds or drops anything. Other classes inherit it
/// virtually. [interface thread]
class ZAudioDocument : public ZDocument
{
public:
    /// From a document type: `elements`, and under `networks` each `network` with its `bay`. Of
    /// several networks of one type the last one counts. Throws ZException -1 for a class that is
    /// not known or is none of bays. [setup]
    ZAudioDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZAudioDocument() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZDOCUMENTCHANGED: BecameCurrent when "NewDocument" is this one; without the field throws
    /// ZException -1. ZPRESETSAVE: lets the user save a preset file. ZPRESETLOAD: lets the user
    /// load one, and is then handed to both networks. ZSETDEFAULTS, ZRESET: handed to both. ZUNDO,
    /// ZREDO: to the transaction manager. The rest as ZDocument.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// A tag "document" with name and class.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    /// Adds `networks`, each with its bays, and `elements`, the archivable ones of the top level.
    /// Throws as ZElement::ExtractBody.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;

    /// The network that takes the audio in, or puts it out; null when the description has none.
    [[nodiscard]] virtual boost::shared_ptr<ZBay> GetInputNetwork() const { return mInputNetwork; }
    [[nodiscard]] virtual boost::shared_ptr<ZBay> GetOutputNetwork() const
    {
        return mOutputNetwork;
    }
    /// Of the output network, in samples; 0 without one.
    [[nodiscard]] virtual std::int32_t GetLatency() const;
    /// The element "audioformat".
    [[nodiscard]] const boost::shared_ptr<ZAudioFormatElement>& GetAudioFormat() const
    {
        return mAudioFormat;
    }

    /// Adds a `preset` with the document in it to the parent, once what waits for this looper has
    /// been delivered. Throws as ExtractBody.
    virtual void SavePreset(ZXMLElement& parent);
    /// Takes over the values of all elements that the XML names, at whatever depth they stand in
    /// it; what it does not mention stays. The XML is a `preset`, or holds one; one of another
    /// version is refused with a box. What waited for this looper is delivered first; then
    /// ZPRESETLOADBEGIN, the changes and ZPRESETLOADEND reach their handlers before this returns.
    /// Throws ZException -1 for null, with nothing changed, and as ZElement::RestoreBody for an
    /// element that cannot be restored: what stands before it in the text has been taken over, and
    /// the end has been told.
    virtual void LoadPreset(const boost::shared_ptr<ZXMLElement>& xml);

    /// Tells the observers of all marked leaves below the element, and takes the marks; each tick
    /// calls it with the document itself.
    void FlushChanges(const ZElement& element);

protected:
    /// The `preset` of a file that was read, or an element that holds it; null when there is none.
    using PresetOfFile = boost::shared_ptr<ZXMLElement> (*)(const ZXMLDocument& read);

    /// Asks for the file under the kind's description, and saves there. Throws ZException -1 when
    /// it cannot be written.
    void SavePresetFile(const char* description, const ZMessage& message);
    /// Asks for the file and loads it; a failure is told in a box, and what was restored by then
    /// stays. False when the user has chosen none.
    bool LoadPresetFile(const char* description, const char* prompt, PresetOfFile presetOfFile,
                        const ZMessage& message);

private:
    void BuildNetworks(const ZXMLElement& networks);
    [[nodiscard]] boost::shared_ptr<ZBay> BuildNetwork(const ZXMLElement& network);
    void SendToNetworks(const boost::shared_ptr<const ZMessage>& message);
    void HandleDocumentChanged(const ZMessage& message);
    void RestoreElements(const boost::shared_ptr<ZXMLElement>& xml);
    void RestoreElement(const boost::shared_ptr<ZXMLElement>& xml);
    void DeliverPending();
    void EndLoad();

    boost::shared_ptr<ZAudioFormatElement> mAudioFormat;
    boost::shared_ptr<ZBay> mInputNetwork;
    boost::shared_ptr<ZBay> mOutputNetwork;
};

}  // namespace orvane
