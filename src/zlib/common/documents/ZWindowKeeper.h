// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZHandler.h"

#include <boost/smart_ptr/shared_ptr.hpp>

namespace orvane
{

class ZWindow;

/// What an application needs of its window manager, which stands in a row above: it receives what
/// becomes of documents, and has a current window. [interface thread]
class ZWindowKeeper : public ZHandler
{
public:
    using ZHandler::ZHandler;

    /// Null when there is none.
    [[nodiscard]] virtual boost::shared_ptr<ZWindow> GetCurrentWindow() const = 0;
};

}  // namespace orvane
