// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowType.h"

#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZWindow.h"

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
        throw ZException("Class '" + mClass + "' of window type '" + mName + "' is no window");
    return window;
}

}  // namespace orvane
