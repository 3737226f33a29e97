// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZDeviceScale.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

#include <cstdint>
#include <memory>

namespace orvane
{

class ZBitmap;
class ZDrawingContext;

/// What a small window without views shows, such as a menu or a tip, and how it handles events.
/// Coordinates are the window's, in units. It works without a display. [interface thread, with the
/// interface lock]
class ZWindowContent
{
public:
    ZWindowContent() = default;
    ZWindowContent(const ZWindowContent&) = delete;
    ZWindowContent& operator=(const ZWindowContent&) = delete;
    virtual ~ZWindowContent() = default;

    /// Draws all of the window, at every paint.
    virtual void Draw(ZDrawingContext& context) = 0;
    /// Both return true when the window has to be painted again.
    virtual bool Mouse(const ZNativeMouseEvent& /*event*/) { return false; }
    virtual bool Key(const ZNativeKeyEvent& /*event*/) { return false; }
    /// Called when the keyboard has gone to another window.
    virtual void FocusLost() {}
    /// Called when the user closes the window by its title bar, or the system has destroyed it.
    virtual void Dismiss() {}
};

/// Shows a content in a window of the system. [interface thread, with the interface lock]
class ZContentWindow : private ZNativeWindowClient
{
public:
    /// Makes a hidden window; null where there is no display. The rectangle of the settings is in
    /// pixels, of which the scale says how many the content's units have. The content, which is not
    /// owned, must live longer.
    [[nodiscard]] static std::unique_ptr<ZContentWindow>
    Create(const ZNativeWindow::Settings& settings, ZWindowContent& content,
           const ZDeviceScale& scale);
    ~ZContentWindow() override;

    void Show();
    /// Paints the whole window again when the system has time.
    void Redraw();
    [[nodiscard]] ZNativeWindow& GetNative() const { return *mNative; }
    /// Returns whether the window has the keyboard.
    [[nodiscard]] bool HasFocus() const { return mHasFocus; }

private:
    ZContentWindow(const ZRect& rect, ZWindowContent& content, const ZDeviceScale& scale);

    void NativePaint(const ZRect& update) override;
    void NativeMouse(const ZNativeMouseEvent& event) override;
    bool NativeKey(const ZNativeKeyEvent& event) override;
    void NativeFocus(bool focused) override;
    void NativeCloseRequested() override;
    void NativeDestroyed() override;

    ZWindowContent& mContent;
    const ZDeviceScale mScale;
    std::unique_ptr<ZBitmap> mPicture;
    std::unique_ptr<ZNativeWindow> mNative;
    bool mHasFocus = false;
};

/// Returns the rectangle moved into the monitor; what is larger than the monitor is cut.
[[nodiscard]] ZRect keptOn(const ZRect& monitor, const ZRect& rect);

}  // namespace orvane
