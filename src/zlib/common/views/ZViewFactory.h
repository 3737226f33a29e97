// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

namespace orvane
{

class ZApplication;
class ZView;
class ZXMLElement;

/// Builds a view from a `view` tag by its class; a class that the application's registry does not
/// know gives a label with the class's name. The application may be null. [interface thread]
[[nodiscard]] boost::shared_ptr<ZView> makeView(const boost::shared_ptr<ZXMLElement>& xml,
                                                ZApplication* application);

}  // namespace orvane
