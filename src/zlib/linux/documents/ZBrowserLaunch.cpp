// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZBrowserLaunch.h"

#include "zlib/linux/documents/ZDesktopProgram.h"

namespace orvane
{

void ZBrowserLaunch::OpenAddress(void* launch)
{
    // setsid forks and ends at once, so the opener is no child of the host's: nobody has to wait
    // for it, and some openers stay for as long as the browser does.
    const ZDesktopProgram opener(
        {"setsid", "--fork", "xdg-open", static_cast<ZBrowserLaunch*>(launch)->mAddress});
}

}  // namespace orvane
