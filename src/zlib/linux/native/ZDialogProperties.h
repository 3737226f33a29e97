// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/linux/native/ZXcb.h"

namespace orvane
{

class ZDisplayConnection;

/// What a window manager is told of a dialog. [inside a ZDisplayUse]
///
/// That it is a dialog, of fixed size, asks before it closes, and belongs above the window around
/// parent; 0 for none.
void setDialogProperties(ZDisplayConnection& display, xcb_window_t window, xcb_window_t parent);
void setDialogTitle(ZDisplayConnection& display, xcb_window_t window, const ZString& title);
/// Where it was put, and that its size is not the user's to change.
void setDialogPlace(ZDisplayConnection& display, xcb_window_t window, const ZRect& rect);
/// Whether the event is the user's wish to close the dialog.
[[nodiscard]] bool isCloseRequest(ZDisplayConnection& display,
                                  const xcb_client_message_event_t& event);

}  // namespace orvane
