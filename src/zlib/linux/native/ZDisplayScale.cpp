// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/native/ZDisplayScale.h"

#include "zlib/linux/native/ZPipeSignalBlock.h"
#include "zlib/linux/native/ZXcb.h"

#include <xcb/xcb_xrm.h>

#include <memory>

namespace orvane
{

namespace
{

struct DatabaseFreer
{
    void operator()(xcb_xrm_database_t* database) const { xcb_xrm_database_free(database); }
};

// Of a screen whose windows are not to be enlarged.
constexpr double kPlainDpi = 96.0;
// Beyond these limits the value was not meant for a screen.
constexpr long kLeastDpi = 24;
constexpr long kMostDpi = 960;

}  // namespace

std::optional<double> readDisplayScale()
{
    const ZPipeSignalBlock pipeSignal;
    const XcbConnection connection(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(connection.get()) != 0)
        return std::nullopt;
    const std::unique_ptr<xcb_xrm_database_t, DatabaseFreer> database(
        xcb_xrm_database_from_default(connection.get()));
    long dpi = 0;
    if (!database || xcb_xrm_resource_get_long(database.get(), "Xft.dpi", nullptr, &dpi) < 0 ||
        dpi < kLeastDpi || dpi > kMostDpi)
        return std::nullopt;
    return static_cast<double>(dpi) / kPlainDpi;
}

}  // namespace orvane
