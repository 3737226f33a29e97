// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZThread.h"

#include <string>
#include <string_view>

namespace orvane
{

/// Opens an address of the web in the user's browser, on a thread of its own, since the desktop may
/// take its time to find one. The browser belongs to the desktop and outlives us.
class ZBrowserLaunch
{
public:
    /// Starts the thread. Throws ZException -1 when it cannot be made.
    explicit ZBrowserLaunch(std::string_view address);
    /// Waits for the thread, which does not wait for the browser. Give up the interface lock first.
    ~ZBrowserLaunch() = default;

    /// True for a text that may be given to the desktop: "http://" or "https://" and more, without
    /// blanks and control characters. A description could name any file or program else.
    [[nodiscard]] static bool IsWebAddress(std::string_view address);

private:
    /// The platform's half.
    static void OpenAddress(void* launch);

    const std::string mAddress;
    ZThread mThread;  // last: it reads the address until it is joined
};

}  // namespace orvane
