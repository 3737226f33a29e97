// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZMouse.h"

#include <cstdlib>
#include <utility>

namespace orvane
{

namespace
{

using Event = ZNativeMouseEvent;

constexpr xcb_button_t kContextButton = 3;
constexpr xcb_button_t kWheelUp = 4;
constexpr xcb_button_t kWheelDown = 5;

/// Modifiers as in ZNativeMouseEvent.
std::uint32_t modifiersOf(std::uint16_t state)
{
    std::uint32_t modifiers = 1;
    if (state & XCB_MOD_MASK_SHIFT)
        modifiers |= 2U;
    if (state & XCB_MOD_MASK_1)
        modifiers |= 8U;
    if (state & XCB_MOD_MASK_CONTROL)
        modifiers |= 0x10U;
    return modifiers;
}

/// Position and modifiers have the same offsets in all pointer events.
Event makeEvent(Event::Action action, const xcb_generic_event_t& event)
{
    const auto& pointer = reinterpret_cast<const xcb_motion_notify_event_t&>(event);
    Event made;
    made.action = action;
    made.position = {pointer.event_x, pointer.event_y};
    made.modifiers = modifiersOf(pointer.state);
    return made;
}

/// The left and the middle button act alike. The right one opens context menus.
bool isButton(xcb_button_t button)
{
    return button == 1 || button == 2;
}

/// Whether a button was down right before an event.
bool wasDown(xcb_button_t button, std::uint16_t state)
{
    return (state & (XCB_BUTTON_MASK_1 << (button - 1))) != 0;
}

}  // namespace

std::optional<ZNativeMouseEvent> ZMouse::Translate(const xcb_generic_event_t& event)
{
    const auto& button = reinterpret_cast<const xcb_button_press_event_t&>(event);
    std::optional<Event> made;
    switch (event.response_type & 0x7F) {
    case XCB_MOTION_NOTIFY:
    case XCB_ENTER_NOTIFY:
        made = makeEvent(Event::kMove, event);
        break;
    case XCB_LEAVE_NOTIFY:
        made = makeEvent(Event::kLeave, event);
        break;
    case XCB_BUTTON_PRESS:
        made = Press(button);
        break;
    case XCB_BUTTON_RELEASE:
        // A menu that opens at a press gets the release of that press, so a release without a press
        // counts.
        if (isButton(button.detail) && (mHeld == kNoButton || mHeld == button.detail)) {
            mHeld = kNoButton;
            made = makeEvent(Event::kUp, event);
        } else if (button.detail == kContextButton && mHeld == kNoButton) {
            made = makeEvent(Event::kContextUp, event);
        }
        break;
    default:
        break;
    }
    if (made && IsRepetition(*made))
        return std::nullopt;
    mLast = made.value_or(mLast);
    return made;
}

// When the pointer enters a window the display sends an enter event and a motion event of the same
// position.
bool ZMouse::IsRepetition(const ZNativeMouseEvent& event) const
{
    return event.action == Event::kMove && mLast.action == Event::kMove &&
           event.position == mLast.position && event.modifiers == mLast.modifiers;
}

std::optional<ZNativeMouseEvent> ZMouse::Press(const xcb_button_press_event_t& event)
{
    const auto& generic = reinterpret_cast<const xcb_generic_event_t&>(event);
    if (event.detail == kWheelUp || event.detail == kWheelDown) {
        Event made = makeEvent(Event::kWheel, generic);
        made.wheelNotches = event.detail == kWheelUp ? 1 : -1;
        return made;
    }
    if (!isButton(event.detail) && event.detail != kContextButton)
        return std::nullopt;
    // Another button does not take part in a drag. A button whose release went to another window is
    // known to be up by the state.
    if (mHeld != kNoButton && wasDown(mHeld, event.state))
        return std::nullopt;
    if (event.detail == kContextButton) {
        mHeld = kNoButton;
        return makeEvent(Event::kContext, generic);
    }
    mHeld = event.detail;
    const bool isSecond = IsSecondClick(event);
    mLastPress = isSecond ? xcb_button_press_event_t{} : event;
    return makeEvent(isSecond ? Event::kDoubleClick : Event::kDown, generic);
}

// The server's clock wraps round; the unsigned difference is right all the same.
bool ZMouse::IsSecondClick(const xcb_button_press_event_t& event) const
{
    return event.detail == mLastPress.detail &&
           event.time - mLastPress.time <= kDoubleClickMilliseconds &&
           std::abs(event.root_x - mLastPress.root_x) <= kDoubleClickPixels &&
           std::abs(event.root_y - mLastPress.root_y) <= kDoubleClickPixels;
}

std::optional<ZNativeMouseEvent> ZMouse::Release()
{
    if (std::exchange(mHeld, kNoButton) == kNoButton)
        return std::nullopt;
    mLast.action = Event::kUp;
    mLast.wheelNotches = 0;
    return mLast;
}

}  // namespace orvane
