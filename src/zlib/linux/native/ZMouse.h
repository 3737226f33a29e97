// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/linux/native/ZXcb.h"

#include <cstdint>
#include <optional>

namespace orvane
{

/// Translates the display's pointer events for one window: recognises double clicks and wheels, and
/// keeps track of the button that is down. While one is, others are ignored. [interface thread]
class ZMouse
{
public:
    /// The longest time and distance between the two presses of a double click.
    static constexpr std::uint32_t kDoubleClickMilliseconds = 400;
    static constexpr std::int32_t kDoubleClickPixels = 4;

    /// None if windows do not get the event: sideways wheels, the right button and those beyond it,
    /// a second button during a drag, a move to where the pointer is already.
    [[nodiscard]] std::optional<ZNativeMouseEvent> Translate(const xcb_generic_event_t& event);
    /// Marks the button as up when the display will not report its release; returns the event that
    /// tells so, or none if no button was down.
    [[nodiscard]] std::optional<ZNativeMouseEvent> Release();

private:
    [[nodiscard]] std::optional<ZNativeMouseEvent> Press(const xcb_button_press_event_t& event);
    [[nodiscard]] bool IsRepetition(const ZNativeMouseEvent& event) const;
    [[nodiscard]] bool IsSecondClick(const xcb_button_press_event_t& event) const;

    static constexpr xcb_button_t kNoButton = 0;

    xcb_button_t mHeld = kNoButton;  // the button that is down
    ZNativeMouseEvent mLast;
    // The press that may become a double click; its detail is 0 if there is none.
    xcb_button_press_event_t mLastPress{};
};

}  // namespace orvane
