// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZNativeWindowNative.h"

#include "zlib/linux/native/ZDialogProperties.h"

#include <optional>
#include <utility>

namespace orvane
{

namespace
{

/// The event's form, which its type has told.
template <typename T>
const T& as(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const T&>(event);
}

/// Sent by another program, not by the server.
bool isSent(std::uint8_t responseType)
{
    return (responseType & 0x80) != 0;
}

}  // namespace

ZNativeWindow::Native::Native(std::shared_ptr<ZDisplayConnection> connection, xcb_window_t window,
                              const Settings& settings, ZNativeWindowClient& windowClient)
    : display(std::move(connection))
    , id(window)
    , kind(settings.kind)
    , client(windowClient)
    , parent(static_cast<xcb_window_t>(settings.parent))
    , rect(settings.rect)
{
    display->AddClient(id, *this);
}

// The server ends a capture with the window.
ZNativeWindow::Native::~Native()
{
    if (isGone)
        return;
    const ZDisplayUse use(display);
    display->RemoveClient(id);
    xcb_destroy_window(display->GetNative(), id);
}

void ZNativeWindow::Native::HandleEvent(const xcb_generic_event_t& event)
{
    switch (event.response_type & 0x7F) {
    case XCB_KEY_PRESS:
        return HandleKeyDown(as<xcb_key_press_event_t>(event));
    case XCB_KEY_RELEASE:
        return HandleKeyUp(as<xcb_key_press_event_t>(event));
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE:
    case XCB_MOTION_NOTIFY:
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY:
        return HandleMouse(event);
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT:
        return HandleFocus(as<xcb_focus_in_event_t>(event));
    case XCB_EXPOSE: {
        const auto& expose = as<xcb_expose_event_t>(event);
        return Invalidate({expose.x, expose.y, expose.x + expose.width, expose.y + expose.height});
    }
    case XCB_UNMAP_NOTIFY:
        return HandleUnmapped();
    case XCB_DESTROY_NOTIFY:
        return HandleGone();
    case XCB_REPARENT_NOTIFY:
        parent = as<xcb_reparent_notify_event_t>(event).parent;
        return;
    case XCB_CONFIGURE_NOTIFY:
        return HandlePlace(as<xcb_configure_notify_event_t>(event));
    case XCB_CLIENT_MESSAGE:
        if (isCloseRequest(*display, as<xcb_client_message_event_t>(event)))
            client.NativeCloseRequested();
        return;
    default:
        return;
    }
}

void ZNativeWindow::Native::HandlePosted()
{
    isPaintPosted = false;
    Paint();
}

void ZNativeWindow::Native::HandleDisplayLost()
{
    HandleGone();
}

void ZNativeWindow::Native::Invalidate(const ZRect& part)
{
    update = update.Union(part);
    if (isShown)
        PostPaint();
}

void ZNativeWindow::Native::PostPaint()
{
    if (update.IsEmpty() || isPaintPosted)
        return;
    isPaintPosted = true;
    display->PostTo(id);
}

void ZNativeWindow::Native::Paint()
{
    const ZRect part = std::exchange(update, ZRect{});
    if (part.IsEmpty() || !IsAlive())
        return;
    const ZDisplayUse use(display);
    client.NativePaint(part);
}

void ZNativeWindow::Native::HandleMouse(const xcb_generic_event_t& event)
{
    if (const auto made = mMouse.Translate(event))
        client.NativeMouse(*made);
}

void ZNativeWindow::Native::HandleKeyDown(const xcb_key_press_event_t& event)
{
    const ZNativeKeyEvent key = display->GetKeyboard().Translate(event);
    const auto keptDisplay = display;
    const xcb_window_t keptId = id;
    const bool isTaken = client.NativeKey(key);
    if (!keptDisplay->HasClient(keptId))
        return;
    mTakenKeys[event.detail] = isTaken;
    if (!isTaken)
        PassKeyOn(event, XCB_EVENT_MASK_KEY_PRESS);
}

void ZNativeWindow::Native::HandleKeyUp(const xcb_key_press_event_t& event)
{
    if (mTakenKeys[event.detail])
        mTakenKeys[event.detail] = false;
    else
        PassKeyOn(event, XCB_EVENT_MASK_KEY_RELEASE);
}

// The keyboard's shortcuts are the host's as long as the pointer or the focus is here. What was
// sent and not typed has perhaps come that way already, and goes no further.
void ZNativeWindow::Native::PassKeyOn(const xcb_key_press_event_t& event, std::uint32_t mask) const
{
    if (kind != Kind::kChild || isSent(event.response_type))
        return;
    const ZDisplayUse use(display);
    xcb_key_press_event_t passed = event;
    passed.event = parent;
    passed.child = id;
    passed.event_x = static_cast<std::int16_t>(event.event_x + rect.left);
    passed.event_y = static_cast<std::int16_t>(event.event_y + rect.top);
    xcb_send_event(display->GetNative(), 1, parent, mask, reinterpret_cast<const char*>(&passed));
}

// What a grab of the keyboard does to the focus is undone with it, and a pointer that is where the
// focus is means nothing.
void ZNativeWindow::Native::HandleFocus(const xcb_focus_in_event_t& event)
{
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB ||
        event.detail == XCB_NOTIFY_DETAIL_POINTER)
        return;
    client.NativeFocus((event.response_type & 0x7F) == XCB_FOCUS_IN);
}

// A dialog stands in a frame of the window manager's, which sends it its place on the screen.
void ZNativeWindow::Native::HandlePlace(const xcb_configure_notify_event_t& event)
{
    const ZRect before = rect;
    const bool tellsPlace =
        kind != Kind::kDialog || isSent(event.response_type) || parent == display->GetRoot();
    const ZPoint place = tellsPlace ? ZPoint{event.x, event.y} : ZPoint{rect.left, rect.top};
    rect = {place.x, place.y, place.x + event.width, place.y + event.height};
    const auto keptDisplay = display;
    const xcb_window_t keptId = id;
    if (place != ZPoint{before.left, before.top})
        client.NativeMoved(place);
    const bool isSized = event.width != before.GetWidth() || event.height != before.GetHeight();
    if (isSized && keptDisplay->HasClient(keptId))
        client.NativeSized(event.width, event.height);
}

// No release will come of buttons that are down.
void ZNativeWindow::Native::HandleUnmapped()
{
    isCapturing = false;
    if (const auto released = mMouse.Release())
        client.NativeMouse(*released);
}

void ZNativeWindow::Native::HandleGone()
{
    display->RemoveClient(id);
    isGone = true;
    isCapturing = false;
    client.NativeDestroyed();
}

}  // namespace orvane
