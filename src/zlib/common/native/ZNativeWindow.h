// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <memory>

namespace orvane
{

class ZImage;

/// A window of the system by its number; 0 for none.
using ZNativeHandle = std::uintptr_t;

/// What a pointer did over a window; positions are local to it.
struct ZNativeMouseEvent
{
    enum Action
    {
        kMove,
        kDown,
        kUp,
        kDoubleClick,  // comes in place of the second kDown
        kWheel,
        kLeave,
    };

    Action action = kMove;
    ZPoint position;
    std::uint32_t modifiers = 0;    // as "MouseMods": 1 always, 2 shift, 8 alt, 0x10 control
    std::int32_t wheelNotches = 0;  // up is positive
};

/// A key that went down. code is the virtual key that hosts use too (8 backspace, 9 tab, 13 return,
/// 0x10 shift, 0x11 control, 0x1b escape, 0x20 space, 0x21 to 0x28 page up, page down, end, home,
/// left, up, right, down, 0x2e delete, letters and digits by their capital), 0 for others. text is
/// what it types, often empty, and always so while control or alt is held.
struct ZNativeKeyEvent
{
    std::uint8_t code = 0;
    ZString text;
    bool shift = false;
    bool control = false;
    bool alt = false;
};

/// Who is told what happens to a window of the system. All calls come on the interface thread, or
/// inside a call of ZNativeWindow, and under the interface lock. A client may destroy its window
/// inside any of them.
class ZNativeWindowClient
{
public:
    virtual ~ZNativeWindowClient() = default;

    /// Paints what lies in update, and shows it by ZNativeWindow::Present.
    virtual void NativePaint(const ZRect& update) = 0;
    virtual void NativeMouse(const ZNativeMouseEvent& event) = 0;
    /// False leaves the key to whoever holds the window.
    virtual bool NativeKey(const ZNativeKeyEvent& event) = 0;
    /// The top left corner, in the parent's coordinates.
    virtual void NativeMoved(const ZPoint& /*position*/) {}
    virtual void NativeSized(std::int32_t /*width*/, std::int32_t /*height*/) {}
    virtual void NativeFocus(bool focused) = 0;
    /// The user asks a window with a title bar to close.
    virtual void NativeCloseRequested() = 0;
    /// The window is gone: its parent was destroyed, or the display is. The object stays, does
    /// nothing any more and waits to be destroyed.
    virtual void NativeDestroyed() = 0;
};

/// A window of the system; carried by the platform. All windows of a library share one connection
/// to the display, which is opened with the first and closed with the last; the interface thread
/// serves it. Nothing here fails once the window exists: on one that is gone all calls do nothing.
/// [under the interface lock, any thread but the audio thread]
class ZNativeWindow
{
public:
    enum class Kind
    {
        kChild,   // inside parent, no frame
        kDialog,  // with a title bar, above parent, closed by the user; parent may be 0
        kPopup,   // without a frame, above all, not the window manager's business: menus, tooltips
    };

    struct Settings
    {
        Kind kind = Kind::kChild;
        ZNativeHandle parent = 0;
        ZRect rect;  // kChild: in the parent's coordinates; others: on the screen
        ZString title;
    };

    struct Native;

    /// Makes a hidden window. Null where there is no display, or where a child's parent is no
    /// window; one line on standard error tells which.
    [[nodiscard]] static std::unique_ptr<ZNativeWindow> Create(const Settings& settings,
                                                               ZNativeWindowClient& client);

    explicit ZNativeWindow(std::unique_ptr<Native> native);
    ZNativeWindow(const ZNativeWindow&) = delete;
    ZNativeWindow& operator=(const ZNativeWindow&) = delete;
    /// Gives up captures; nothing reaches the client any more.
    ~ZNativeWindow();

    [[nodiscard]] ZNativeHandle GetHandle() const;
    /// False once the window is gone.
    [[nodiscard]] bool IsAlive() const;
    void Show();
    void Hide();
    /// Whether it was shown last; it may be covered.
    [[nodiscard]] bool IsVisible() const;
    void SetRect(const ZRect& rect);
    void SetTitle(const ZString& title);
    /// Adds to the rectangle that the interface thread paints when it has time.
    void Invalidate(const ZRect& rect);
    /// Paints now what waits to be painted.
    void Update();
    /// Copies a part of the image to the same place in the window.
    void Present(const ZImage& image, const ZRect& rect);
    /// All mouse events of the display come here until the capture ends; where another program
    /// holds the mouse, only those over the window, and false.
    bool SetCapture(bool on);
    /// The keyboard comes here.
    void SetFocus();
    /// Where a local point lies on the screen.
    [[nodiscard]] ZPoint ToScreen(const ZPoint& point) const;
    /// The monitor around a point of the screen, in the screen's coordinates.
    [[nodiscard]] ZRect GetMonitor(const ZPoint& screenPoint) const;

private:
    std::unique_ptr<Native> mNative;
};

}  // namespace orvane
