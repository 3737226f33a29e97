// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

namespace orvane
{

/// Receives the display's events for one window. All calls come on the interface thread, under the
/// interface lock. A client may be destroyed inside any of them.
class ZDisplayClient
{
public:
    virtual ~ZDisplayClient() = default;

    virtual void HandleEvent(const xcb_generic_event_t& event) = 0;
    /// Called once for each ZDisplayConnection::PostTo.
    virtual void HandlePosted() = 0;
    /// The display is gone, and the window with it.
    virtual void HandleDisplayLost() = 0;
};

}  // namespace orvane
