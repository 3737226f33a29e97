// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZDocumentType.h"
#include "zlib/common/objects/ZHandler.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace orvane
{

class ZDocument;
class ZMessage;
class ZXMLElement;

/// The document types of an application and the documents made from them, one of which is the
/// current one. Tells the window manager and the audio manager of the application what becomes of
/// them; one that is missing is passed over. Messages carry documents as
/// boost::shared_ptr<ZDocument>. [interface thread]
class ZDocumentManager : public ZHandler
{
public:
    /// From a `documentmanager`. Throws ZException -1 for another tag, there or below. [setup]
    ZDocumentManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    /// Lets its documents go, without asking them.
    ~ZDocumentManager() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZDOCUMENTNEW, ZFILENEW ("filename", the name of a type): NewDocument of each type of that
    /// name. ZDOCNEXT ("DocNextName"), ZDOCPREV ("DocPrevName"), ZDOCCLOSE and ZDOCSELECT
    /// ("Document"): see the operations. Throws ZException -1 when the field is missing. All else
    /// ends here.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// A new document, named by the running count, made the current one and told of by ZDOCUMENTNEW
    /// with "Document". Throws as ZDocumentType::CreateDocument, with nothing changed, and what
    /// those throw that are told.
    virtual boost::shared_ptr<ZDocument> NewDocument(const ZDocumentType& type);

    /// True for the messages that HandleZMessage answers.
    [[nodiscard]] virtual bool Answers(std::int32_t messageId) const;

    /// Sends ZDOCUMENTCHANGED with "NewDocument". A document that is not of this manager changes
    /// nothing.
    void SelectDocument(const boost::shared_ptr<ZDocument>& document);
    /// The one behind or before the current one, in a circle.
    void SelectNext();
    void SelectPrevious();
    /// Asks the document, sends ZDOCUMENTCLOSED with "CloseDocument", lets it go and makes the
    /// first one that remains the current one. False, with nothing changed, when it does not agree
    /// or is not of this manager.
    bool CloseDocument(const boost::shared_ptr<ZDocument>& document);

    /// Null when there is none.
    [[nodiscard]] boost::shared_ptr<ZDocument> GetCurrentDocument() const { return mCurrent; }
    [[nodiscard]] std::int32_t GetDocumentCount() const;
    /// Null when there is none at that index.
    [[nodiscard]] boost::shared_ptr<ZDocument> GetDocument(std::int32_t index) const;
    [[nodiscard]] const std::vector<ZDocumentType>& GetTypes() const { return mTypes; }
    /// Whether the description allows several documents; the manager itself does not mind.
    [[nodiscard]] bool IsMultiple() const { return mMultiple; }

protected:
    /// The same for a derived class, with the text for another tag.
    ZDocumentManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application,
                     const char* wrongTag);

private:
    void AddDocumentTypes(const ZXMLElement& xml);
    void NewDocuments(const ZMessage& message);
    void SelectFromCurrent(std::int32_t step);
    void Tell(std::int32_t messageId, const char* field,
              const boost::shared_ptr<ZDocument>& document);

    std::int32_t mDocumentCount = 0;  // of all that were ever made
    std::vector<ZDocumentType> mTypes;
    std::vector<boost::shared_ptr<ZDocument>> mDocuments;
    boost::shared_ptr<ZDocument> mCurrent;
    bool mMultiple = true;
};

/// A manager of the class that a `documentmanager` names. Throws as its constructor. [setup]
[[nodiscard]] std::unique_ptr<ZDocumentManager>
makeDocumentManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

}  // namespace orvane
