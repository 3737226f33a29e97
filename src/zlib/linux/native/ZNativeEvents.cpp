// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZNativeEvents.h"

#include "zlib/linux/native/ZDialogProperties.h"

#include <cassert>
#include <optional>
#include <utility>

namespace orvane
{

namespace
{

/// The event as the structure that belongs to its type.
template <typename T>
const T& as(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const T&>(event);
}

/// Whether another program sent the event, not the server.
bool isSent(std::uint8_t responseType)
{
    return (responseType & 0x80) != 0;
}

}  // namespace

ZNativeEvents::ZNativeEvents(std::shared_ptr<ZDisplayConnection> display, xcb_window_t window,
                             const ZNativeWindow::Settings& settings, ZNativeWindowClient& client)
    : mDisplay(std::move(display))
    , mWindow(window)
    , mKind(settings.kind)
    , mClient(client)
    , mParent(static_cast<xcb_window_t>(settings.parent))
    , mRect(settings.rect)
{
    assert(mWindow != XCB_NONE && mParent != XCB_NONE);
    assert(!mDisplay->HasClient(mWindow));
    mDisplay->AddClient(mWindow, *this);
}

ZNativeEvents::~ZNativeEvents()
{
    if (!mGone)
        mDisplay->RemoveClient(mWindow);
}

void ZNativeEvents::SetShown(bool shown)
{
    mShown = shown;
    if (shown)
        PostPaint();
}

void ZNativeEvents::HandleEvent(const xcb_generic_event_t& event)
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
        mParent = as<xcb_reparent_notify_event_t>(event).parent;
        return;
    case XCB_CONFIGURE_NOTIFY:
        return HandleConfigure(as<xcb_configure_notify_event_t>(event));
    case XCB_CLIENT_MESSAGE:
        if (isCloseRequest(*mDisplay, as<xcb_client_message_event_t>(event)))
            mClient.NativeCloseRequested();
        return;
    default:
        return;
    }
}

void ZNativeEvents::HandlePosted()
{
    mPaintPosted = false;
    Paint();
}

void ZNativeEvents::HandleDisplayLost()
{
    HandleGone();
}

void ZNativeEvents::Invalidate(const ZRect& rect)
{
    mUpdate = mUpdate.Union(rect);
    if (mShown)
        PostPaint();
}

void ZNativeEvents::PostPaint()
{
    if (mUpdate.IsEmpty() || mPaintPosted)
        return;
    mPaintPosted = true;
    mDisplay->PostTo(mWindow);
}

void ZNativeEvents::Paint()
{
    const ZRect part = std::exchange(mUpdate, ZRect{});
    if (part.IsEmpty() || !IsAlive())
        return;
    const ZDisplayUse use(mDisplay);
    mClient.NativePaint(part);
}

void ZNativeEvents::HandleMouse(const xcb_generic_event_t& event)
{
    if (const auto translated = mMouse.Translate(event))
        mClient.NativeMouse(*translated);
}

void ZNativeEvents::HandleKeyDown(const xcb_key_press_event_t& event)
{
    const ZNativeKeyEvent key = mDisplay->GetKeyboard().Translate(event);
    const auto display = mDisplay;  // copies: the client may destroy this object
    const xcb_window_t window = mWindow;
    const bool isTaken = mClient.NativeKey(key);
    display->GetKeyboard().SetUsed(event.detail, isTaken);
    if (!isTaken && display->HasClient(window))
        PassKeyOn(event, XCB_EVENT_MASK_KEY_PRESS);
}

void ZNativeEvents::HandleKeyUp(const xcb_key_press_event_t& event)
{
    if (!mDisplay->GetKeyboard().EndUse(event.detail))
        PassKeyOn(event, XCB_EVENT_MASK_KEY_RELEASE);
}

// Lets the host's shortcuts work while the pointer or the focus is in the window. A key event that
// was sent, not typed, may have come from this very function, so it is not passed on again.
void ZNativeEvents::PassKeyOn(const xcb_key_press_event_t& event, std::uint32_t mask) const
{
    if (mKind != Kind::kChild || isSent(event.response_type))
        return;
    const ZDisplayUse use(mDisplay);
    xcb_key_press_event_t passed = event;
    passed.event = mParent;
    passed.child = mWindow;
    passed.event_x = static_cast<std::int16_t>(event.event_x + mRect.left);
    passed.event_y = static_cast<std::int16_t>(event.event_y + mRect.top);
    xcb_send_event(mDisplay->GetNative(), 1, mParent, mask, reinterpret_cast<const char*>(&passed));
}

// Ignores changes that a keyboard grab makes, since its end reverts them, and events that only tell
// that the pointer is in a window with the focus.
void ZNativeEvents::HandleFocus(const xcb_focus_in_event_t& event)
{
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB ||
        event.detail == XCB_NOTIFY_DETAIL_POINTER)
        return;
    mClient.NativeFocus((event.response_type & 0x7F) == XCB_FOCUS_IN);
}

// Inside the window manager's frame a dialog gets positions relative to the frame. Positions on the
// screen come in events that the window manager sends.
void ZNativeEvents::HandleConfigure(const xcb_configure_notify_event_t& event)
{
    const ZRect before = mRect;
    const bool isOnScreen =
        mKind != Kind::kDialog || isSent(event.response_type) || mParent == mDisplay->GetRoot();
    const ZPoint place = isOnScreen ? ZPoint{event.x, event.y} : ZPoint{mRect.left, mRect.top};
    mRect = {place.x, place.y, place.x + event.width, place.y + event.height};
    const auto display = mDisplay;  // copies: the client may destroy this object
    const xcb_window_t window = mWindow;
    if (place != ZPoint{before.left, before.top})
        mClient.NativeMoved(place);
    const bool isSized = event.width != before.GetWidth() || event.height != before.GetHeight();
    if (isSized && display->HasClient(window))
        mClient.NativeSized(event.width, event.height);
}

// The display reports no release for buttons that are down when the window is unmapped.
void ZNativeEvents::HandleUnmapped()
{
    mCapturing = false;
    if (const auto released = mMouse.Release())
        mClient.NativeMouse(*released);
}

void ZNativeEvents::HandleGone()
{
    mDisplay->RemoveClient(mWindow);
    mGone = true;
    mCapturing = false;
    mClient.NativeDestroyed();
}

}  // namespace orvane
