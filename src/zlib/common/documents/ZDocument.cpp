// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZDocument.h"

#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/documents/ZTransactionManager.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>

namespace orvane
{

ZDocument::ZDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZElement(xml, application)
{
    assert(application);
    if (const auto elements = xml->GetChild("elements"))
        AddChildElements(*elements);
    if (const auto managers = xml->GetChild("documentmanagers"))
        AddDocumentManagers(managers);
    mTransactionManager = boost::make_shared<ZTransactionManager>();
}

ZDocument::~ZDocument() = default;

void ZDocument::AddDocumentManagers(const boost::shared_ptr<ZXMLElement>& xml)
{
    if (!xml->IsNamed("documentmanagers")) {
        ZTrace::Write("\nError: ZDocument::AddDocumentManagers,  XML tag is not a "
                      "<documentmanagers>.\n");
        return;
    }
    const std::int32_t count = xml->GetChildCount("documentmanager");
    for (std::int32_t i = 0; i < count; ++i)
        mDocumentManagers.Append(
            makeDocumentManager(xml->GetChild("documentmanager", i), GetApp()));
}

bool ZDocument::IsKindOf(std::string_view className) const
{
    return className == "ZDocumentClass" || ZElement::IsKindOf(className);
}

const char* ZDocument::GetClassName() const
{
    return "ZDocumentClass";
}

void ZDocument::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    if (message->GetId() != ZELEMENTCHANGED)
        return;
    std::uint64_t elementId = 0;
    if (!message->Find("elementid", elementId))
        throw ZException("Couldn't find elementid in Message");
    ElementChanged(elementId);
}

void ZDocument::DocumentMade()
{
}

void ZDocument::PresetBegins()
{
}

void ZDocument::PresetEnds()
{
}

void ZDocument::BecameCurrent()
{
}

bool ZDocument::AgreesToClose()
{
    return true;
}

bool ZDocument::ReadFile(ZFile& /*file*/)
{
    return false;
}

void ZDocument::ElementChanged(std::uint64_t /*elementId*/)
{
}

boost::shared_ptr<ZElement> ZDocument::FindElement(std::string_view name) const
{
    boost::shared_ptr<ZElement> element;
    return FindSubElement(name, element) ? element : nullptr;
}

}  // namespace orvane
