// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZDocumentType.h"
#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZLockedList.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace orvane
{

class ZDocument;
class ZMessage;
class ZXMLElement;

/// Keeps document types and the documents created from them, one of which is current. Notifies the
/// application's window manager and audio manager, where they exist, of new, changed and closed
/// documents; the messages hold the document as boost::shared_ptr<ZDocument>. [interface thread]
class ZDocumentManager : public ZHandler
{
public:
    /// Reads a `documentmanager`. Throws ZException kGeneral for a wrong tag, of the manager, its
    /// types or one of them. [setup]
    ZDocumentManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    /// Releases the documents without asking them whether they agree.
    ~ZDocumentManager() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZDOCUMENTNEW, ZFILENEW ("filename", a type's name): calls NewDocument for each type of that
    /// name. ZDOCNEXT ("DocNextName"), ZDOCPREV ("DocPrevName"): selects the next or previous
    /// document. ZDOCCLOSE, ZDOCSELECT ("Document"): closes or selects it. Throws ZException
    /// kGeneral when the field is missing. Other messages are ignored.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// Creates a document, names it by the running count, makes it current and sends ZDOCUMENTNEW
    /// ("Document"). Throws what ZDocumentType::CreateDocument throws, with nothing changed, and
    /// what the receivers throw.
    virtual boost::shared_ptr<ZDocument> NewDocument(const ZDocumentType& type);

    /// True for the messages that HandleZMessage handles.
    [[nodiscard]] virtual bool Answers(std::int32_t messageId) const;

    /// Makes the document current and sends ZDOCUMENTCHANGED ("NewDocument"), also to the document
    /// and to the commands. Ignores a document that this manager does not hold.
    void SelectDocument(const boost::shared_ptr<ZDocument>& document);
    /// Select the document after or before the current one; the last is followed by the first.
    void SelectNext();
    void SelectPrevious();
    /// Sends ZDOCUMENTCLOSED ("CloseDocument"), releases the document and selects the first
    /// remaining one. False, with nothing changed, when the document does not agree or this manager
    /// does not hold it.
    bool CloseDocument(const boost::shared_ptr<ZDocument>& document);

    /// Returns the current document, or null when there is none.
    [[nodiscard]] boost::shared_ptr<ZDocument> GetCurrentDocument() const { return mCurrent; }
    [[nodiscard]] std::int32_t GetDocumentCount() const;
    /// Returns a document, or null for an index out of range.
    [[nodiscard]] boost::shared_ptr<ZDocument> GetDocument(std::int32_t index) const;
    /// Returns the types in the order of the description.
    [[nodiscard]] std::vector<ZDocumentType> GetTypes() const { return mTypes.Copy(); }
    /// True for type "mdi", false for "sdi". The manager itself sets no limit in either case.
    [[nodiscard]] bool IsMultiple() const { return mMultiple; }

protected:
    /// The same for a derived class, with its own exception text for a wrong tag.
    ZDocumentManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application,
                     const char* wrongTag);

private:
    void AddDocumentTypes(const ZXMLElement& xml);
    void NewDocuments(const ZMessage& message);
    [[nodiscard]] bool Holds(const boost::shared_ptr<ZDocument>& document) const;
    void SelectFromCurrent(std::int32_t step);
    void NotifyManagers(std::int32_t messageId, const char* field,
                        const boost::shared_ptr<ZDocument>& document);

    std::int32_t mDocumentCount = 0;  // of documents ever created, closed ones included
    ZLockedList<ZDocumentType> mTypes{"document types"};
    ZLockedList<boost::shared_ptr<ZDocument>> mDocuments{"document instances"};
    boost::shared_ptr<ZDocument> mCurrent;
    bool mMultiple = true;
};

/// Creates a ZFileDocumentManager when the `documentmanager` asks for that class, else a
/// ZDocumentManager. Throws what the constructor throws. [setup]
[[nodiscard]] std::unique_ptr<ZDocumentManager>
makeDocumentManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

}  // namespace orvane
