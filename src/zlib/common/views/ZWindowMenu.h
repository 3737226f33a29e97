// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZPoint.h"

namespace orvane
{

class ZView;
class ZWindow;

/// The context menu of a window and of the views in it. Its class belongs to a higher row; the
/// window makes it by the class that its description names: `<contextmenu class=>`.
/// [interface thread]
class ZWindowMenu : public ZHandler
{
public:
    using ZHandler::ZHandler;

    /// Opens the menu at a point of the window, in units, and does what the user chooses. view,
    /// which may be null, is the one that the menu was asked for at. Window and view may be gone
    /// when the call returns; the window keeps this object meanwhile.
    virtual void Show(ZWindow& window, ZView* view, const ZPoint& point) = 0;
};

}  // namespace orvane
