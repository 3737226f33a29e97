// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"

#include <sys/types.h>

namespace orvane
{

/// An X server of the test's own, 1024 x 768 pixels that nobody sees. The variable DISPLAY names it
/// for the life of the object.
struct VirtualDisplay
{
    /// Whether this machine has such a server, and the environment does not set
    /// KESTRUNE_NO_DISPLAY; a test skips where it has none.
    [[nodiscard]] static bool IsAvailable();

    /// options are further arguments of the server. Throws std::runtime_error when it does not
    /// start.
    explicit VirtualDisplay(const std::vector<std::string>& options = {});
    VirtualDisplay(VirtualDisplay&&) = delete;
    ~VirtualDisplay();

    /// Ends the server on the spot, as a crash would.
    void Kill();

private:
    pid_t mServer = -1;
    std::string mBefore;  // what DISPLAY was
};

}  // namespace orvane
