// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/linux/native/ZDisplayConnection.h"
#include "zlib/linux/native/ZMouse.h"
#include "zlib/linux/native/ZXcb.h"

#include <bitset>
#include <memory>

namespace orvane
{

/// A window is one of the X server's; here stands what its events do. The client may destroy it
/// inside any call of the client.
struct ZNativeWindow::Native : ZDisplayClient
{
    /// window exists on the display.
    Native(std::shared_ptr<ZDisplayConnection> connection, xcb_window_t window,
           const Settings& settings, ZNativeWindowClient& windowClient);
    Native(const Native&) = delete;
    Native& operator=(const Native&) = delete;
    ~Native() override;

    void HandleEvent(const xcb_generic_event_t& event) override;
    void HandlePosted() override;
    void HandleDisplayLost() override;

    [[nodiscard]] bool IsAlive() const { return !isGone && !display->IsBroken(); }
    /// Adds to the update and has it painted when the interface thread has time.
    void Invalidate(const ZRect& part);
    void PostPaint();
    void Paint();

    const std::shared_ptr<ZDisplayConnection> display;
    const xcb_window_t id;
    const Kind kind;
    ZNativeWindowClient& client;
    xcb_window_t parent;
    ZRect rect;  // as told last
    ZRect update;
    bool isGone = false;
    bool isShown = false;
    bool isPaintPosted = false;
    bool isCapturing = false;

private:
    void HandleMouse(const xcb_generic_event_t& event);
    void HandleKeyDown(const xcb_key_press_event_t& event);
    void HandleKeyUp(const xcb_key_press_event_t& event);
    void PassKeyOn(const xcb_key_press_event_t& event, std::uint32_t mask) const;
    void HandleFocus(const xcb_focus_in_event_t& event);
    void HandlePlace(const xcb_configure_notify_event_t& event);
    void HandleUnmapped();
    void HandleGone();

    ZMouse mMouse;
    std::bitset<256> mTakenKeys;  // that went down and were the client's
};

}  // namespace orvane
