#include "zlib/common/ZNativeWindow.h"

#include <utility>

namespace orvane
{

/// Nothing yet: as on a system without a display.
struct ZNativeWindow::Native
{
};

std::unique_ptr<ZNativeWindow> ZNativeWindow::Create(const Settings&, ZNativeWindowClient&)
{
    return nullptr;
}

ZNativeWindow::ZNativeWindow(std::unique_ptr<Native> native)
    : mNative(std::move(native))
{
}

ZNativeWindow::~ZNativeWindow() = default;

ZNativeHandle ZNativeWindow::GetHandle() const
{
    return 0;
}

bool ZNativeWindow::IsAlive() const
{
    return false;
}

void ZNativeWindow::Show()
{
}

void ZNativeWindow::Hide()
{
}

bool ZNativeWindow::IsVisible() const
{
    return false;
}

void ZNativeWindow::SetRect(const ZRect&)
{
}

void ZNativeWindow::SetTitle(const ZString&)
{
}

void ZNativeWindow::Invalidate(const ZRect&)
{
}

void ZNativeWindow::Update()
{
}

void ZNativeWindow::Present(const ZImage&, const ZRect&)
{
}

bool ZNativeWindow::SetCapture(bool)
{
    return false;
}

void ZNativeWindow::SetFocus()
{
}

ZPoint ZNativeWindow::ToScreen(const ZPoint& point) const
{
    return point;
}

ZRect ZNativeWindow::GetMonitor(const ZPoint&) const
{
    return {};
}

}  // namespace orvane
