// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZViewFactory.h"

#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZTrace.h"
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

std::vector<boost::shared_ptr<ZView>>
makeSubviews(const ZXMLElement& parent, std::string_view parentName, ZApplication* application)
{
    std::vector<boost::shared_ptr<ZView>> made;
    const auto subviews = parent.GetChild("subviews");
    const std::int32_t count = subviews ? subviews->GetChildCount("view") : 0;
    for (std::int32_t i = 0; i < count; ++i) {
        const auto view = subviews->GetChild("view", i);
        ZTrace::Write("View (" + std::string(parentName) + "): Adding " +
                      view->GetAttributeOr("class", "") + " instance named '" +
                      view->GetAttributeOr("name", "") + "' \n");
        made.push_back(makeView(view, application));
    }
    return made;
}

}  // namespace orvane
