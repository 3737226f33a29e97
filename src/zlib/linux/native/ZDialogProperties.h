// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/linux/native/ZXcb.h"

namespace orvane
{

class ZDisplayConnection;

// Properties by which a window manager knows a dialog. Call these functions inside a ZDisplayUse.

/// Returns the top-level window that contains the window: the one that the window manager knows.
[[nodiscard]] xcb_window_t topLevelAround(ZDisplayConnection& display, xcb_window_t window);
/// Marks the window as a dialog that handles its close button itself and that stays above the
/// top-level window around parent; parent may be XCB_NONE. A modal one blocks that window. Comes
/// before the window is shown.
void setDialogProperties(ZDisplayConnection& display, xcb_window_t window, xcb_window_t parent,
                         bool modal);
void setDialogTitle(ZDisplayConnection& display, xcb_window_t window, const ZString& title);
/// Tells the position that was chosen for the dialog, and whether the user can resize it.
void setDialogPlace(ZDisplayConnection& display, xcb_window_t window, const ZRect& rect,
                    bool resizable);
/// Whether the event says that the user pressed the close button.
[[nodiscard]] bool isCloseRequest(ZDisplayConnection& display,
                                  const xcb_client_message_event_t& event);

}  // namespace orvane
