// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string_view>
#include <vector>

namespace orvane
{

class ZApplication;
class ZView;
class ZXMLElement;

/// Builds a view from a `view` tag by its class; a class that the application's registry does not
/// know gives a label with the class's name. The application may be null. [interface thread]
[[nodiscard]] boost::shared_ptr<ZView> makeView(const boost::shared_ptr<ZXMLElement>& xml,
                                                ZApplication* application);

/// Builds the views under the `subviews` tag of the parent, if there is one, in their order.
[[nodiscard]] std::vector<boost::shared_ptr<ZView>>
makeSubviews(const ZXMLElement& parent, std::string_view parentName, ZApplication* application);

}  // namespace orvane
