// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/linux/native/ZDisplayConnection.h"
#include "zlib/linux/native/ZMouse.h"
#include "zlib/linux/native/ZXcb.h"

#include <memory>

namespace orvane
{

/// The event half of a ZNativeWindow: turns the display's events into calls of the window's client,
/// and collects what has to be painted. The client may destroy the window, and with it this object,
/// inside any of these calls. [interface thread, or any other under the interface lock]
class ZNativeEvents : public ZDisplayClient
{
public:
    /// window exists on the display; settings tell its kind, its parent on the display and its
    /// place. client outlives this object.
    ZNativeEvents(std::shared_ptr<ZDisplayConnection> display, xcb_window_t window,
                  const ZNativeWindow::Settings& settings, ZNativeWindowClient& client);
    ZNativeEvents(const ZNativeEvents&) = delete;
    ZNativeEvents& operator=(const ZNativeEvents&) = delete;
    /// Leaves the display; no event reaches the client any more.
    ~ZNativeEvents() override;

    /// False once the window was destroyed on the display or the display is gone.
    [[nodiscard]] bool IsAlive() const { return !mGone && !mDisplay->IsBroken(); }
    [[nodiscard]] bool IsGone() const { return mGone; }

    /// Whether the window was shown. A hidden window collects what is invalid and has it painted
    /// when it is shown.
    [[nodiscard]] bool IsShown() const { return mShown; }
    void SetShown(bool shown);

    /// Whether the window holds the pointer; ends by itself when the window is unmapped or gone.
    [[nodiscard]] bool IsCapturing() const { return mCapturing; }
    void SetCapturing(bool capturing) { mCapturing = capturing; }

    /// Adds to the invalid rectangle and has it painted when the interface thread has time.
    void Invalidate(const ZRect& rect);
    /// Has the client paint the invalid rectangle now.
    void Paint();

    void HandleEvent(const xcb_generic_event_t& event) override;
    void HandlePosted() override;
    void HandleDisplayLost() override;

private:
    using Kind = ZNativeWindow::Kind;

    void PostPaint();
    void HandleMouse(const xcb_generic_event_t& event);
    void HandleKeyDown(const xcb_key_press_event_t& event);
    void HandleKeyUp(const xcb_key_press_event_t& event);
    void PassKeyOn(const xcb_key_press_event_t& event, std::uint32_t mask) const;
    void HandleFocus(const xcb_focus_in_event_t& event);
    void HandleConfigure(const xcb_configure_notify_event_t& event);
    void HandleUnmapped();
    void HandleGone();

    const std::shared_ptr<ZDisplayConnection> mDisplay;
    const xcb_window_t mWindow;
    const Kind mKind;
    ZNativeWindowClient& mClient;
    xcb_window_t mParent;
    ZRect mRect;    // position and size that the client was told last
    ZRect mUpdate;  // invalid, still to be painted
    bool mGone = false;
    bool mShown = false;
    bool mPaintPosted = false;
    bool mCapturing = false;
    ZMouse mMouse;
};

}  // namespace orvane
