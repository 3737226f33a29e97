// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <memory>

namespace orvane
{

class ZImage;

/// The window system's number of a window; 0 for none.
using ZNativeHandle = std::uintptr_t;

/// An event of the mouse; the position is relative to the window.
struct ZNativeMouseEvent
{
    enum Action
    {
        kMove,
        kDown,
        kUp,
        kDoubleClick,  // replaces the second kDown
        kWheel,
        kLeave,
        kContext,    // the right button went down
        kContextUp,  // and up again
    };

    Action action = kMove;
    ZPoint position;
    std::uint32_t modifiers = 0;    // field "MouseMods": 1 always, 2 shift, 8 alt, 0x10 control
    std::int32_t wheelNotches = 0;  // positive away from the user
};

/// A key that went down.
struct ZNativeKeyEvent
{
    std::uint8_t code = 0;  // a ZKeyCode, or the ASCII code of a letter or digit
    ZString text;           // what the key types; empty while control or alt is held
    bool shift = false;
    bool control = false;
    bool alt = false;

    /// Returns whether this is that key, with neither control nor alt held.
    [[nodiscard]] bool Is(std::uint8_t key) const { return code == key && !control && !alt; }
    /// Returns whether desktops open context menus by the key.
    [[nodiscard]] bool IsForContextMenu() const { return Is(kKeyMenu) || (shift && Is(kKeyF10)); }
};

/// Receives the events of a native window. All calls come on the interface thread, or inside a call
/// of ZNativeWindow, and under the interface lock. A client may destroy its window inside any of
/// them.
class ZNativeWindowClient
{
public:
    virtual ~ZNativeWindowClient() = default;

    /// Paints the rectangle update and shows it with ZNativeWindow::Present.
    virtual void NativePaint(const ZRect& update) = 0;
    virtual void NativeMouse(const ZNativeMouseEvent& event) = 0;
    /// Returns whether the key was used; a key that was not is passed on to the parent window.
    virtual bool NativeKey(const ZNativeKeyEvent& event) = 0;
    /// position: the top left corner in the parent's coordinates.
    virtual void NativeMoved(const ZPoint& /*position*/) {}
    virtual void NativeSized(std::int32_t /*width*/, std::int32_t /*height*/) {}
    virtual void NativeFocus(bool focused) = 0;
    /// The user wants to close a window that has a title bar.
    virtual void NativeCloseRequested() = 0;
    /// The window no longer exists, because its parent was destroyed or the display is gone. The
    /// ZNativeWindow stays until the client destroys it; its calls do nothing.
    virtual void NativeDestroyed() = 0;
};

/// A window of the window system; implemented per platform. All windows of the library share one
/// connection to the display, opened for the first window and closed after the last; the interface
/// thread reads its events. No call fails: on a window that no longer exists calls do nothing.
/// [any thread but the audio thread, under the interface lock]
class ZNativeWindow
{
public:
    enum class Kind
    {
        kChild,   // inside parent, no frame
        kDialog,  // with a title bar, above parent, which may be 0; the user can close it
        kPopup,   // no frame, above all other windows, not managed by the window manager
    };

    struct Settings
    {
        Kind kind = Kind::kChild;
        ZNativeHandle parent = 0;
        ZRect rect;  // kChild: in the parent's coordinates; else in the screen's
        ZString title;
        bool modal = false;      // kDialog: blocks the window above which it stays
        bool resizable = false;  // kDialog: by the user
    };

    struct Native;

    /// Makes a hidden window. client outlives it. Null, with a line on standard error, if there is
    /// no display or if the parent of a child is no window.
    [[nodiscard]] static std::unique_ptr<ZNativeWindow> Create(const Settings& settings,
                                                               ZNativeWindowClient& client);

    explicit ZNativeWindow(std::unique_ptr<Native> native);
    ZNativeWindow(const ZNativeWindow&) = delete;
    ZNativeWindow& operator=(const ZNativeWindow&) = delete;
    /// Ends a capture and closes the window; the client gets no more events.
    ~ZNativeWindow();

    [[nodiscard]] ZNativeHandle GetHandle() const;
    /// Returns the top-level window around this one, which is the host's around a child; 0 once the
    /// window is gone.
    [[nodiscard]] ZNativeHandle GetTopLevel() const;
    /// False once the window no longer exists on the display.
    [[nodiscard]] bool IsAlive() const;
    void Show();
    void Hide();
    /// Whether Show was called after Hide; other windows may cover the window.
    [[nodiscard]] bool IsVisible() const;
    /// Moves and resizes the window; rect is in the coordinates of Settings::rect.
    void SetRect(const ZRect& rect);
    /// Has an effect on dialogs only.
    void SetTitle(const ZString& title);
    /// Adds to the rectangle that the interface thread has the client paint when it has time.
    void Invalidate(const ZRect& rect);
    /// Has the client paint the invalid rectangle now.
    void Update();
    /// Copies a part of the image to the same place in the window.
    void Present(const ZImage& image, const ZRect& rect);
    /// Starts or ends a capture: all mouse events of the display go to this window. Returns whether
    /// the window captures now; false if another program holds the mouse.
    bool SetCapture(bool on);
    /// Gives the window the keyboard focus.
    void SetFocus();
    /// Converts a point of the window to screen coordinates.
    [[nodiscard]] ZPoint ToScreen(const ZPoint& point) const;
    /// The rectangle of the monitor at a point of the screen, in screen coordinates.
    [[nodiscard]] ZRect GetMonitor(const ZPoint& screenPoint) const;

private:
    std::unique_ptr<Native> mNative;
};

}  // namespace orvane
