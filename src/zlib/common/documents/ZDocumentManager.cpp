// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZDocumentManager.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZAudioManager.h"
#include "zlib/common/documents/ZCommandList.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZFileDocumentManager.h"
#include "zlib/common/documents/ZWindowKeeper.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <iterator>
#include <string>

namespace orvane
{

namespace
{

using SharedDocument = boost::shared_ptr<ZDocument>;

ZString requireText(const ZMessage& message, const char* field, const char* missing)
{
    ZString text;
    if (!message.Find(field, text))
        throw ZException(missing);
    return text;
}

SharedDocument requireDocument(const ZMessage& message)
{
    SharedDocument document;
    if (!message.Find("Document", document))
        throw ZException("Couldn't find Document in message");
    return document;
}

}  // namespace

ZDocumentManager::ZDocumentManager(const boost::shared_ptr<ZXMLElement>& xml,
                                   ZApplication* application)
    : ZDocumentManager(xml, application,
                       "ZDocumentManager::ZDocumentManager,  XML tag is not a <documentmanager>.")
{
}

ZDocumentManager::ZDocumentManager(const boost::shared_ptr<ZXMLElement>& xml,
                                   ZApplication* application, const char* wrongTag)
    : ZHandler(xml, application)
{
    if (!xml->IsNamed("documentmanager"))
        throw ZException(wrongTag);
    mMultiple = !xml->AttributeIs("type", "sdi");
    if (const auto types = xml->GetChild("documenttypes"))
        AddDocumentTypes(*types);
}

ZDocumentManager::~ZDocumentManager() = default;

void ZDocumentManager::AddDocumentTypes(const ZXMLElement& xml)
{
    if (!xml.IsNamed("documenttypes"))
        throw ZException("ZDocumentManager::AddDocumentTypes,  XML tag is not a <documenttypes>.");
    const std::int32_t count = xml.GetChildCount("doctype");
    for (std::int32_t i = 0; i < count; ++i)
        mTypes.Append(ZDocumentType(xml.GetChild("doctype", i)));
}

bool ZDocumentManager::IsKindOf(std::string_view className) const
{
    return className == "ZDocumentManagerClass" || ZHandler::IsKindOf(className);
}

const char* ZDocumentManager::GetClassName() const
{
    return "ZDocumentManagerClass";
}

bool ZDocumentManager::Answers(std::int32_t messageId) const
{
    switch (messageId) {
    case ZDOCUMENTNEW:
    case ZFILENEW:
    case ZDOCNEXT:
    case ZDOCPREV:
    case ZDOCCLOSE:
    case ZDOCSELECT:
        return true;
    default:
        return false;
    }
}

void ZDocumentManager::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZDOCUMENTNEW:
    case ZFILENEW:
        return NewDocuments(*message);
    case ZDOCNEXT:
        requireText(*message, "DocNextName", "Couldn't find DocNextName in message");
        return SelectNext();
    case ZDOCPREV:
        requireText(*message, "DocPrevName", "Couldn't find DocPrevName in message");
        return SelectPrevious();
    case ZDOCCLOSE:
        ZTrace::Write("__ZDOCCLOSE__\n");
        CloseDocument(requireDocument(*message));
        return;
    case ZDOCSELECT:
        return SelectDocument(requireDocument(*message));
    default:
        return;
    }
}

void ZDocumentManager::NewDocuments(const ZMessage& message)
{
    ZTrace::Write("__ZFILENEW/ZDOCUMENTNEW__\n");
    const std::string name =
        requireText(message, "filename", "Couldn't find NewFileName in message").ToNarrow();
    for (const ZDocumentType& type : mTypes.Copy())
        if (type.name == name)
            NewDocument(type);
}

SharedDocument ZDocumentManager::NewDocument(const ZDocumentType& type)
{
    assert(ZInterfaceLock::IsHeld());
    ZApplication* const application = GetApp();
    if (!application)
        throw ZException("Document type failed to instanciate.");
    auto document = type.CreateDocument(application->GetClassRegistry());
    const std::string name = "Untitled " + GetName() + " " + std::to_string(++mDocumentCount);
    document->SetName(name);
    document->SetTitle(name);
    document->SetTypeName(GetName());
    document->DocumentMade();
    mDocuments.Append(document);
    SelectDocument(document);
    NotifyManagers(ZDOCUMENTNEW, "Document", document);
    return document;
}

bool ZDocumentManager::Holds(const SharedDocument& document) const
{
    const auto documents = mDocuments.Copy();
    return std::find(documents.begin(), documents.end(), document) != documents.end();
}

void ZDocumentManager::SelectDocument(const SharedDocument& document)
{
    assert(ZInterfaceLock::IsHeld());
    if (!Holds(document))
        return;
    mCurrent = document;
    NotifyManagers(ZDOCUMENTCHANGED, "NewDocument", document);
    // Commands follow elements of the current document, and the document has a hook for this.
    const auto message = boost::make_shared<ZMessage>(ZDOCUMENTCHANGED);
    message->Add<SharedDocument>("NewDocument", document);
    ZApp* const app = ZApp::Of(*this);
    if (app && app->HasCommandList())
        app->GetCommandList()->HandleZMessage(message);
    document->HandleZMessage(message);
}

void ZDocumentManager::SelectNext()
{
    SelectFromCurrent(1);
}

void ZDocumentManager::SelectPrevious()
{
    SelectFromCurrent(-1);
}

void ZDocumentManager::SelectFromCurrent(std::int32_t step)
{
    assert(ZInterfaceLock::IsHeld());
    assert(step == 1 || step == -1);
    const auto documents = mDocuments.Copy();
    const auto found = std::find(documents.begin(), documents.end(), mCurrent);
    if (found == documents.end())
        return;
    const std::ptrdiff_t count = std::ssize(documents);
    const std::ptrdiff_t next = (std::distance(documents.begin(), found) + step + count) % count;
    SelectDocument(documents[static_cast<std::size_t>(next)]);
}

bool ZDocumentManager::CloseDocument(const SharedDocument& document)
{
    assert(ZInterfaceLock::IsHeld());
    const SharedDocument closed = document;  // kept beyond the entry in the list
    if (!Holds(closed) || !closed->AgreesToClose())
        return false;
    NotifyManagers(ZDOCUMENTCLOSED, "CloseDocument", closed);
    mDocuments.Remove(closed);
    mCurrent.reset();
    if (const auto first = GetDocument(0))
        SelectDocument(first);
    return true;
}

void ZDocumentManager::NotifyManagers(std::int32_t messageId, const char* field,
                                      const SharedDocument& document)
{
    ZApp* const app = ZApp::Of(*this);
    if (!app)
        return;
    const auto message = boost::make_shared<ZMessage>(messageId);
    message->Add<SharedDocument>(field, document);
    if (ZWindowKeeper* const windows = app->GetWindowManager())
        windows->HandleZMessage(message);
    if (ZAudioManager* const audio = app->GetAudioManager())
        audio->HandleZMessage(message);
}

std::int32_t ZDocumentManager::GetDocumentCount() const
{
    return mDocuments.Count();
}

SharedDocument ZDocumentManager::GetDocument(std::int32_t index) const
{
    SharedDocument document;
    static_cast<void>(mDocuments.Get(index, document));
    return document;
}

std::unique_ptr<ZDocumentManager> makeDocumentManager(const boost::shared_ptr<ZXMLElement>& xml,
                                                      ZApplication* application)
{
    if (xml->AttributeIs("class", "ZFileDocumentManager"))
        return std::make_unique<ZFileDocumentManager>(xml, application);
    return std::make_unique<ZDocumentManager>(xml, application);
}

}  // namespace orvane
