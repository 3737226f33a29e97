// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZMouse.h"

#include "support/Test.h"

using namespace orvane;

namespace
{

using Action = ZNativeMouseEvent::Action;

/// What the mouse makes of an event of a button; state tells which buttons were down before it.
std::optional<Action> translate(ZMouse& mouse, std::uint8_t type, std::uint8_t button,
                                std::uint16_t state = 0, std::uint32_t time = 0, int x = 0)
{
    xcb_button_press_event_t event{};
    event.response_type = type;
    event.detail = button;
    event.state = state;
    event.time = time;
    event.root_x = static_cast<std::int16_t>(x);
    const auto made = mouse.Translate(reinterpret_cast<const xcb_generic_event_t&>(event));
    return made ? std::optional(made->action) : std::nullopt;
}

/// A press of a button at a time and a place, with no button down before.
Action press(ZMouse& mouse, std::uint32_t time, int x, std::uint8_t button = 1)
{
    return translate(mouse, XCB_BUTTON_PRESS, button, 0, time, x).value();
}

}  // namespace

TEST(ZMouseTest, DoubleClickIsQuickNearAndOfOneButton)
{
    ZMouse mouse;
    EXPECT_EQ(press(mouse, 0xFFFFFF00, 0), Action::kDown);
    EXPECT_EQ(press(mouse, 0xFFFFFF00 + 400, 4), Action::kDoubleClick) << "the clock wraps round";
    EXPECT_EQ(press(mouse, 1000, 4), Action::kDown);
    EXPECT_EQ(press(mouse, 1401, 4), Action::kDown) << "too late";
    EXPECT_EQ(press(mouse, 1402, 9), Action::kDown) << "too far";
    EXPECT_EQ(press(mouse, 1403, 9, 2), Action::kDown) << "another button";
    EXPECT_EQ(press(mouse, 1404, 9, 2), Action::kDoubleClick);
    EXPECT_EQ(mouse.Release()->action, Action::kUp);
    EXPECT_FALSE(mouse.Release()) << "no button is down";
}

TEST(ZMouseTest, OnlyTheButtonThatBeganADragEndsIt)
{
    constexpr std::uint8_t kPress = XCB_BUTTON_PRESS;
    constexpr std::uint8_t kRelease = XCB_BUTTON_RELEASE;
    ZMouse mouse;
    EXPECT_EQ(translate(mouse, kPress, 1), Action::kDown);
    for (std::uint8_t other = 2; other <= 3; ++other)
        for (const std::uint8_t type : {kPress, kRelease})
            EXPECT_EQ(translate(mouse, type, other, XCB_BUTTON_MASK_1), std::nullopt);
    EXPECT_EQ(translate(mouse, kRelease, 1, XCB_BUTTON_MASK_1), Action::kUp);
    EXPECT_EQ(translate(mouse, kPress, 3), Action::kContext);
    EXPECT_EQ(translate(mouse, kRelease, 3, XCB_BUTTON_MASK_3), Action::kContextUp);
    EXPECT_EQ(translate(mouse, kPress, 2), Action::kDown);
    EXPECT_EQ(translate(mouse, kPress, 1), Action::kDown) << "the release went to another window";
    EXPECT_EQ(translate(mouse, kRelease, 1, XCB_BUTTON_MASK_1), Action::kUp);
    EXPECT_EQ(translate(mouse, kRelease, 1), Action::kUp) << "of a press in another window";
}
