// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Locked.h"
#include "support/VirtualDisplayTest.h"
#include "zlib/common/objects/ZInterfaceThread.h"

namespace orvane
{

/// Tests of the library on a display of their own. A test plays the user and the host: it holds the
/// interface lock only where it takes it itself.
struct DisplayTest : VirtualDisplayTest
{
    /// The condition is asked under the interface lock.
    [[nodiscard]] static bool Comes(const std::function<bool()>& condition)
    {
        return waitFor([&] { return locked(condition); });
    }

    const ZInterfaceUnlock unlocked;
    const ZInterfaceThread thread;
};

}  // namespace orvane
