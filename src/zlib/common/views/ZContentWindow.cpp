// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZContentWindow.h"

#include "zlib/common/drawing/ZBitmap.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace orvane
{

std::unique_ptr<ZContentWindow> ZContentWindow::Create(const ZNativeWindow::Settings& settings,
                                                       ZWindowContent& content,
                                                       const ZDeviceScale& scale)
{
    std::unique_ptr<ZContentWindow> window(new ZContentWindow(settings.rect, content, scale));
    window->mNative = ZNativeWindow::Create(settings, *window);
    return window->mNative ? std::move(window) : nullptr;
}

ZContentWindow::ZContentWindow(const ZRect& rect, ZWindowContent& content,
                               const ZDeviceScale& scale)
    : mContent(content)
    , mScale(scale)
{
    const ZRect units = scale.ToUnits(ZRect{0, 0, rect.GetWidth(), rect.GetHeight()});
    mPicture = std::make_unique<ZBitmap>(units.right, units.bottom, scale.Get());
}

ZContentWindow::~ZContentWindow() = default;

void ZContentWindow::Show()
{
    assert(mNative);
    mNative->Show();
}

void ZContentWindow::Redraw()
{
    if (mNative)
        mNative->Invalidate(mScale.ToPixels(mPicture->GetFrame()));
}

void ZContentWindow::NativePaint(const ZRect& update)
{
    // The system may ask for a picture while Create makes the window.
    if (!mNative)
        return;
    mContent.Draw(*mPicture);
    mNative->Present(*mPicture->GetNative(), update);
}

void ZContentWindow::NativeMouse(const ZNativeMouseEvent& event)
{
    ZNativeMouseEvent inUnits = event;
    inUnits.position = mScale.ToUnits(event.position);
    if (mContent.Mouse(inUnits))
        Redraw();
}

bool ZContentWindow::NativeKey(const ZNativeKeyEvent& event)
{
    if (mContent.Key(event))
        Redraw();
    return true;
}

void ZContentWindow::NativeFocus(bool focused)
{
    if (std::exchange(mHasFocus, focused) && !focused)
        mContent.FocusLost();
}

void ZContentWindow::NativeCloseRequested()
{
    mContent.Dismiss();
}

void ZContentWindow::NativeDestroyed()
{
    mContent.Dismiss();
}

ZRect keptOn(const ZRect& monitor, const ZRect& rect)
{
    assert(!monitor.IsEmpty());
    const std::int32_t width = std::min(rect.GetWidth(), monitor.GetWidth());
    const std::int32_t height = std::min(rect.GetHeight(), monitor.GetHeight());
    const std::int32_t left = std::clamp(rect.left, monitor.left, monitor.right - width);
    const std::int32_t top = std::clamp(rect.top, monitor.top, monitor.bottom - height);
    return {left, top, left + width, top + height};
}

}  // namespace orvane
