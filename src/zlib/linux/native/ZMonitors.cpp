// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZMonitors.h"

#include <xcb/randr.h>

#include <algorithm>
#include <cassert>
#include <cstdint>

namespace orvane
{

namespace
{

/// RandR has monitors since version 1.5.
bool knowsMonitors(xcb_connection_t* connection)
{
    const auto* const extension = xcb_get_extension_data(connection, &xcb_randr_id);
    if (!extension || !extension->present)
        return false;
    const auto version = xcbReply(xcb_randr_query_version_reply, connection,
                                  xcb_randr_query_version(connection, 1, 5));
    return version && (version->major_version > 1 || version->minor_version >= 5);
}

std::int64_t distance(const ZRect& rect, const ZPoint& point)
{
    const std::int64_t x = point.x - std::clamp(point.x, rect.left, rect.right - 1);
    const std::int64_t y = point.y - std::clamp(point.y, rect.top, rect.bottom - 1);
    return x * x + y * y;
}

}  // namespace

std::vector<ZRect> readMonitors(xcb_connection_t* connection, xcb_window_t root)
{
    std::vector<ZRect> monitors;
    if (!knowsMonitors(connection))
        return monitors;
    const auto reply = xcbReply(xcb_randr_get_monitors_reply, connection,
                                xcb_randr_get_monitors(connection, root, 1));
    if (!reply)
        return monitors;
    for (auto each = xcb_randr_get_monitors_monitors_iterator(reply.get()); each.rem > 0;
         xcb_randr_monitor_info_next(&each))
    {
        const xcb_randr_monitor_info_t& monitor = *each.data;
        if (monitor.width > 0 && monitor.height > 0)
            monitors.push_back(
                {monitor.x, monitor.y, monitor.x + monitor.width, monitor.y + monitor.height});
    }
    return monitors;
}

ZRect nearestOf(const std::vector<ZRect>& monitors, const ZPoint& point)
{
    assert(!monitors.empty());
    return *std::min_element(monitors.begin(), monitors.end(), [&](const ZRect& a, const ZRect& b) {
        return distance(a, point) < distance(b, point);
    });
}

}  // namespace orvane
