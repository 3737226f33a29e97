// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/linux/native/ZXcb.h"

#include <cstdint>
#include <optional>

namespace orvane
{

/// Translates the display's pointer events for one window: recognises double clicks and wheels, and
/// keeps track of the buttons that are down. [interface thread]
class ZMouse
{
public:
    /// The longest time and distance between the two presses of a double click.
    static constexpr std::uint32_t kDoubleClickMilliseconds = 400;
    static constexpr std::int32_t kDoubleClickPixels = 4;

    /// None if windows do not get the event: sideways wheels, buttons beyond the third, a move to
    /// where the pointer is already.
    [[nodiscard]] std::optional<ZNativeMouseEvent> Translate(const xcb_generic_event_t& event);
    /// Marks all buttons as up when the display will not report their release; returns the event
    /// that tells so, or none if no button was down.
    [[nodiscard]] std::optional<ZNativeMouseEvent> Release();

private:
    [[nodiscard]] std::optional<ZNativeMouseEvent> Press(const xcb_button_press_event_t& event);
    [[nodiscard]] bool IsRepetition(const ZNativeMouseEvent& event) const;
    [[nodiscard]] bool IsSecondClick(const xcb_button_press_event_t& event) const;

    std::uint32_t mDown = 0;  // bit n: button n is down
    ZNativeMouseEvent mLast;
    // The press that may become a double click; its detail is 0 if there is none.
    xcb_button_press_event_t mLastPress{};
};

}  // namespace orvane
