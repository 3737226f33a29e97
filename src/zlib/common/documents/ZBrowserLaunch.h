// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZThread.h"

#include <string>
#include <string_view>

namespace orvane
{

/// Opens a web address in the user's browser, on a thread of its own, since starting the browser
/// may take long. The browser is no child of this process.
class ZBrowserLaunch
{
public:
    /// Starts the thread for an address that IsWebAddress accepts. Throws ZException kGeneral when
    /// the system has no thread left. [interface thread]
    explicit ZBrowserLaunch(std::string_view address);
    /// Joins the thread, which does not wait for the browser. The caller must not hold the
    /// interface lock.
    ~ZBrowserLaunch() = default;

    /// True for "http://" or "https://" followed by at least one character, with no spaces and
    /// control characters. Nothing else is given to the desktop, which would open any file.
    [[nodiscard]] static bool IsWebAddress(std::string_view address);

private:
    /// Runs on the thread; implemented per platform.
    static void OpenAddress(void* launch);

    const std::string mAddress;
    ZThread mThread;  // last member: destroyed, and so joined, before the address it reads
};

}  // namespace orvane
