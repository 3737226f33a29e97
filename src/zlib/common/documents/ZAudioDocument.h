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

/// A document with signal networks, which its constructor creates and prepares; their elements
/// belong to the document's element tree. A preset is the document as XML. Loading one sets the
/// values of existing elements and never creates or removes anything. Derived classes inherit it
/// virtually. [interface thread]
class ZAudioDocument : public ZDocument
{
public:
    /// Reads a `doctype`: its `elements`, and each `network` with its `bay` under `networks`. The
    /// last network of a type replaces earlier ones. Throws ZException kGeneral when the class of a
    /// bay is unknown or not derived from ZBay. [setup]
    ZAudioDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZAudioDocument() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZDOCUMENTCHANGED: calls BecameCurrent when "NewDocument" is this document; throws ZException
    /// kGeneral without the field. ZPRESETSAVE: asks for a file and saves a preset. ZPRESETLOAD:
    /// asks for a preset file, loads it and passes the message to both networks. ZSETDEFAULTS,
    /// ZRESET: passes the message to both networks. ZUNDO, ZREDO: undoes or redoes a transaction,
    /// then calls BecameCurrent. Other messages go to ZDocument.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// Returns a `document` with name and class.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    /// Adds `networks` with both networks, and `elements` with the archivable top-level elements.
    /// Throws what ZElement::ExtractBody throws.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;

    /// Return the network of type "input" or "output", or null when the description has none.
    [[nodiscard]] virtual boost::shared_ptr<ZBay> GetInputNetwork() const { return mInputNetwork; }
    [[nodiscard]] virtual boost::shared_ptr<ZBay> GetOutputNetwork() const
    {
        return mOutputNetwork;
    }
    /// Returns the latency of the output network in samples; 0 without an output network.
    [[nodiscard]] virtual std::int32_t GetLatency() const;
    /// Delivers the looper's pending messages, then adds a `preset` with the document to the
    /// parent. Throws what ExtractBody throws.
    virtual void SavePreset(ZXMLElement& parent);
    /// Sets each element of the document for which the XML has an `element` of the same name, at
    /// any depth; other elements keep their values. The XML is a `preset` or has one as a child; a
    /// child of another version is refused in a message box.
    ///
    /// Delivers the looper's pending messages first, then ZPRESETLOADBEGIN, the change messages and
    /// ZPRESETLOADEND, all before it returns. Throws ZException kGeneral for null, and what
    /// ZElement::RestoreBody throws: then the elements before the faulty one are set, and
    /// ZPRESETLOADEND has been delivered.
    virtual void LoadPreset(const boost::shared_ptr<ZXMLElement>& xml);

    /// Returns the element "audioformat".
    [[nodiscard]] const boost::shared_ptr<ZAudioFormatElement>& GetAudioFormat() const
    {
        return mAudioFormat;
    }
    /// True for an element that only follows parameters of the host, so that its change says
    /// nothing new. False here; for the id see elementIdOf.
    [[nodiscard]] virtual bool FollowsParameter(std::uint64_t elementId) const;
    /// Sends the pending change messages of all elements in the document. Each tick calls it.
    void FlushChanges();

protected:
    /// Returns what LoadPreset gets from a parsed preset file; null is refused there.
    using PresetOfFile = boost::shared_ptr<ZXMLElement> (*)(const ZXMLDocument& file);

    /// Asks for a file of the described type and saves a preset to it. Throws ZException kGeneral
    /// when the file cannot be written.
    void SavePresetFile(const char* description, const ZMessage& message);
    /// Asks for a file of the described type and loads it. Reports a failure in a message box; the
    /// elements that were set by then keep their new values. False when the user cancels.
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
