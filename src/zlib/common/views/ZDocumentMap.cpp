// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZDocumentMap.h"

#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"

namespace orvane
{

ZDocumentMap::ZDocumentMap(const ZXMLElement& xml)
{
    if (!xml.IsNamed("documenttype")) {
        ZTrace::Write("\nError: ZDocumentMap::ZDocumentMap,  XML tag is not a <documenttype>.\n");
        return;
    }
    mDocumentName = xml.GetAttributeOr("docname", "");
    mDocumentClass = xml.GetAttributeOr("docclass", "");
    mWindowName = xml.GetAttributeOr("winname", "");
    mShow = xml.GetAttributeBool("show");
}

bool ZDocumentMap::Matches(const ZDocument& document) const
{
    const bool hasName = mDocumentName.empty() || mDocumentName == document.GetTypeName();
    return hasName && (mDocumentClass.empty() || document.IsKindOf(mDocumentClass));
}

}  // namespace orvane
