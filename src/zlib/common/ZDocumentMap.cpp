#include "zlib/common/ZDocumentMap.h"

#include "zlib/common/ZDocument.h"
#include "zlib/common/ZTrace.h"
#include "zlib/common/ZXMLElement.h"

namespace orvane
{

namespace
{

std::string attributeOf(const ZXMLElement& xml, const char* name)
{
    const char* const value = xml.GetAttribute(name);
    return value ? value : "";
}

}  // namespace

ZDocumentMap::ZDocumentMap(const ZXMLElement& xml)
{
    if (!xml.IsNamed("documenttype")) {
        ZTrace::Write("\nError: ZDocumentMap::ZDocumentMap,  XML tag is not a <documenttype>.\n");
        return;
    }
    mDocumentName = attributeOf(xml, "docname");
    mDocumentClass = attributeOf(xml, "docclass");
    mWindowName = attributeOf(xml, "winname");
    mShow = xml.GetAttributeBool("show");
}

bool ZDocumentMap::Matches(const ZDocument& document) const
{
    const bool hasName = mDocumentName.empty() || mDocumentName == document.GetTypeName();
    return hasName && (mDocumentClass.empty() || document.IsKindOf(mDocumentClass));
}

}  // namespace orvane
