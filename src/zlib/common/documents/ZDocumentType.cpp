// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZDocumentType.h"

#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"

namespace orvane
{

ZDocumentType::ZDocumentType(const boost::shared_ptr<ZXMLElement>& doctype)
    : name(doctype->GetAttributeOr("name", ""))
    , className(doctype->GetAttributeOr("class", ""))
    , xml(doctype)
{
    if (!doctype->IsNamed("doctype"))
        throw ZException("ZDocumentType::ZDocumentType,  XML tag is not a <doctype>.");
    ZTrace::Write("Creating ZDocumentType class='" + className + "' name='" + name + "'\n");
}

boost::shared_ptr<ZDocument> ZDocumentType::CreateDocument(const ZClassRegistry& classes) const
{
    const auto document = boost::dynamic_pointer_cast<ZDocument>(classes.Create(className, xml));
    if (!document)
        throw ZException("Document type failed to instanciate.");
    return document;
}

}  // namespace orvane
