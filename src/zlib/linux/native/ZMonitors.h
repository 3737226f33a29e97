// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/linux/native/ZXcb.h"

#include <vector>

namespace orvane
{

/// The rectangles of the monitors on the root's screen; empty if the server has no RandR 1.5.
[[nodiscard]] std::vector<ZRect> readMonitors(xcb_connection_t* connection, xcb_window_t root);

/// The monitor that contains the point, else the nearest one. monitors is not empty.
[[nodiscard]] ZRect nearestOf(const std::vector<ZRect>& monitors, const ZPoint& point);

}  // namespace orvane
