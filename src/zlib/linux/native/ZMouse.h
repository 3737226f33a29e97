// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/linux/native/ZXcb.h"

#include <cstdint>
#include <optional>

namespace orvane
{

/// The mouse over one window: makes what it did of the display's events, and knows which buttons
/// are down. [under the interface lock]
class ZMouse
{
public:
    /// Two presses of a button make a double click when they lie at most this long and this far
    /// apart.
    static constexpr std::uint32_t kDoubleClickMilliseconds = 400;
    static constexpr std::int32_t kDoubleClickPixels = 4;

    /// None where the event is no business of a window's: wheels that turn sideways, further
    /// buttons.
    [[nodiscard]] std::optional<ZNativeMouseEvent> Translate(const xcb_generic_event_t& event);
    /// The buttons that are down are taken to be up, since the display does not tell any more: the
    /// event that says so, or none when there were none.
    [[nodiscard]] std::optional<ZNativeMouseEvent> Release();

private:
    [[nodiscard]] std::optional<ZNativeMouseEvent> Press(const xcb_button_press_event_t& event);
    [[nodiscard]] bool IsRepetition(const ZNativeMouseEvent& event) const;
    [[nodiscard]] bool IsSecondClick(const xcb_button_press_event_t& event) const;

    std::uint32_t mDown = 0;  // a bit a button
    ZNativeMouseEvent mLast;
    xcb_button_press_event_t
        mLastPress{};  // that may be the first of a double click; detail 0: none
};

}  // namespace orvane
