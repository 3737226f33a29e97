// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZMouse.h"

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

using Action = ZNativeMouseEvent::Action;

/// A press of a button at a time and a place.
Action press(ZMouse& mouse, std::uint32_t time, int x, std::uint8_t button = 1)
{
    xcb_button_press_event_t event{};
    event.response_type = XCB_BUTTON_PRESS;
    event.detail = button;
    event.time = time;
    event.root_x = static_cast<std::int16_t>(x);
    return mouse.Translate(reinterpret_cast<const xcb_generic_event_t&>(event))->action;
}

}  // namespace

TEST(ZMouseTest, ADoubleClickIsQuickNearAndOfOneButton)
{
    ZMouse mouse;
    EXPECT_EQ(press(mouse, 0xFFFFFF00, 0), Action::kDown);
    EXPECT_EQ(press(mouse, 0xFFFFFF00 + 400, 4), Action::kDoubleClick) << "the clock wraps round";
    EXPECT_EQ(press(mouse, 1000, 4), Action::kDown);
    EXPECT_EQ(press(mouse, 1401, 4), Action::kDown) << "too late";
    EXPECT_EQ(press(mouse, 1402, 9), Action::kDown) << "too far";
    EXPECT_EQ(press(mouse, 1403, 9, 3), Action::kDown) << "another button";
    EXPECT_EQ(press(mouse, 1404, 9, 3), Action::kDoubleClick);
    EXPECT_EQ(mouse.Release()->action, Action::kUp);
    EXPECT_FALSE(mouse.Release()) << "no button is down";
}

}  // namespace orvane
