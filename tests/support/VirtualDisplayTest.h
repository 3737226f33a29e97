// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DisplayProbe.h"
#include "support/Test.h"
#include "support/VirtualDisplay.h"

namespace orvane
{

/// Tests on a display of their own, skipped where there can be none.
struct VirtualDisplayTest : testing::Test
{
    void SetUp() final
    {
        if (!VirtualDisplay::IsAvailable())
            GTEST_SKIP() << "no X server for tests";
        StartDisplay();
        Begin();
    }
    /// Does what a test needs once there is a display.
    virtual void Begin() {}

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

    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<DisplayProbe> probe;
};

}  // namespace orvane
