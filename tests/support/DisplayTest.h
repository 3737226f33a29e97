// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DisplayProbe.h"
#include "support/VirtualDisplay.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZInterfaceThread.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orvane
{

/// Tests on a display of their own, skipped where there can be none. A test plays the user and the
/// host: it holds the interface lock only where it takes it itself.
class DisplayTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!VirtualDisplay::IsAvailable())
            GTEST_SKIP() << "no X server for tests";
        StartDisplay();
    }

    /// In the place of the one before; options are arguments of the server.
    void StartDisplay(const std::vector<std::string>& options = {})
    {
        probe.reset();
        display.reset();
        display = std::make_unique<VirtualDisplay>(options);
        probe = std::make_unique<DisplayProbe>();
    }
    [[nodiscard]] bool ShowsAt(int x, int y, std::uint32_t color) const
    {
        return waitFor([&] { return probe->PixelAt(x, y) == color; });
    }
    /// Does something under the interface lock.
    template <typename Action>
    static void Locked(const Action& action)
    {
        const ZInterfaceLock lock;
        action();
    }
    /// The condition is asked under the interface lock.
    [[nodiscard]] static bool Comes(const std::function<bool()>& condition)
    {
        return waitFor([&] {
            const ZInterfaceLock lock;
            return condition();
        });
    }

    const ZInterfaceUnlock unlocked;
    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<DisplayProbe> probe;
    const ZInterfaceThread thread;
};

}  // namespace orvane
