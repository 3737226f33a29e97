// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZViewFactory.h"

#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZStringView.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

boost::shared_ptr<ZView> makeView(const boost::shared_ptr<ZXMLElement>& xml,
                                  ZApplication* application)
{
    const std::string className = xml->GetAttributeOr("class", "");
    if (application && application->GetClassRegistry().Contains(className)) {
        auto view = boost::dynamic_pointer_cast<ZView>(
            application->GetClassRegistry().Create(className, xml));
        if (view)
            return view;
    }
    const auto label = boost::make_shared<ZStringView>(xml, application);
    label->SetText(ZString(className));
    return label;
}

}  // namespace orvane
