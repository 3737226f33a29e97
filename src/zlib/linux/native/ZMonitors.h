// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/linux/native/ZXcb.h"

#include <vector>

namespace orvane
{

/// The rectangles of the monitors on the root's screen; empty where the server does not tell.
[[nodiscard]] std::vector<ZRect> readMonitors(xcb_connection_t* connection, xcb_window_t root);

/// The one around the point, else the one nearest to it, which must be there.
[[nodiscard]] ZRect nearestOf(const std::vector<ZRect>& monitors, const ZPoint& point);

}  // namespace orvane
