#include "zlib/common/ZWindowType.h"

#include "zlib/common/ZApplication.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZException.h"
#include "zlib/common/ZTrace.h"
#include "zlib/common/ZWindow.h"
#include "zlib/common/ZXMLElement.h"

namespace orvane
{

ZWindowType::ZWindowType(const boost::shared_ptr<ZXMLElement>& xml)
{
    if (!xml->IsNamed("windowtype")) {
        ZTrace::Write("\nError: ZWindowType::ZWindowType,  XML tag is not a <windowtype>.\n");
        return;
    }
    mName = xml->GetAttributeOr("name", "");
    mClass = xml->GetAttributeOr("class", "");
    mXml = xml;
}

bool ZWindowType::IsHidden() const
{
    return mXml && mXml->GetAttributeBool("hidden");
}

boost::shared_ptr<ZWindow> ZWindowType::BuildWindow(ZApplication& application) const
{
    const auto object = application.GetClassRegistry().Create(mClass, mXml);
    auto window = boost::dynamic_pointer_cast<ZWindow>(object);
    if (!window)
        throw ZException(-1, "Class '" + mClass + "' of window type '" + mName + "' is no window");
    return window;
}

}  // namespace orvane
