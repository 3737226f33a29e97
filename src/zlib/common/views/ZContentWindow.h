// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

#include <cstdint>
#include <memory>

namespace orvane
{

class ZBitmap;
class ZDrawingContext;

/// What a little window without views shows, and what it makes of events; it needs no display.
/// Coordinates are its own. [interface thread, with the interface lock]
class ZWindowContent
{
public:
    ZWindowContent() = default;
    ZWindowContent(const ZWindowContent&) = delete;
    ZWindowContent& operator=(const ZWindowContent&) = delete;
    virtual ~ZWindowContent() = default;

    /// The whole of it, at every paint: these windows are small.
    virtual void Draw(ZDrawingContext& context) = 0;
    /// True when there is something new to draw.
    virtual bool Mouse(const ZNativeMouseEvent& /*event*/) { return false; }
    virtual bool Key(const ZNativeKeyEvent& /*event*/) { return false; }
    /// The keyboard has gone to another window.
    virtual void FocusLost() {}
    /// The user closes the window by its title bar, or the system has taken it away.
    virtual void Dismiss() {}
};

/// Shows a content in a window of the system of its own. [interface thread, with the interface
/// lock]
class ZContentWindow : private ZNativeWindowClient
{
public:
    /// Null where there is no display. The content, which is not owned, must live longer.
    [[nodiscard]] static std::unique_ptr<ZContentWindow>
    Create(const ZNativeWindow::Settings& settings, ZWindowContent& content);
    ~ZContentWindow() override;

    /// Shows it, and after that paints it anew.
    void Show();
    void Redraw();
    [[nodiscard]] ZNativeWindow& GetNative() const { return *mNative; }
    /// Whether the keys come here.
    [[nodiscard]] bool HasFocus() const { return mHasFocus; }

private:
    ZContentWindow(const ZRect& rect, ZWindowContent& content);

    void NativePaint(const ZRect& update) override;
    void NativeMouse(const ZNativeMouseEvent& event) override;
    bool NativeKey(const ZNativeKeyEvent& event) override;
    void NativeFocus(bool focused) override;
    void NativeCloseRequested() override;
    void NativeDestroyed() override;

    ZWindowContent& mContent;
    std::unique_ptr<ZBitmap> mPicture;
    std::unique_ptr<ZNativeWindow> mNative;
    bool mHasFocus = false;
};

/// The rectangle moved, and where it is too large cut, so that it lies within the monitor.
[[nodiscard]] ZRect keptOn(const ZRect& monitor, const ZRect& rect);

}  // namespace orvane
