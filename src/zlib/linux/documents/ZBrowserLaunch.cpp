// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZBrowserLaunch.h"

#include "zlib/linux/documents/ZDesktopProgram.h"

namespace orvane
{

void ZBrowserLaunch::OpenAddress(void* launch)
{
    // setsid forks and exits at once, so xdg-open is no child of the host and need not be waited
    // for; on some desktops it runs as long as the browser.
    const ZDesktopProgram opener(
        {"setsid", "--fork", "xdg-open", static_cast<ZBrowserLaunch*>(launch)->mAddress});
}

}  // namespace orvane
