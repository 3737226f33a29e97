// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMenuWindow.h"

#include "zlib/common/controls/ZMenuContent.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/views/ZContentWindow.h"
#include "zlib/common/views/ZWindow.h"

#include <chrono>

namespace orvane
{

namespace
{

// The time between two scrolling steps while the pointer rests on an arrow, and between two checks
// whether the menu's window is still visible.
constexpr std::chrono::milliseconds kPollInterval{70};

/// Sets the content's size, reduced to fit on the monitor, and returns its rectangle on the screen
/// in pixels.
ZRect placeMenu(ZMenuContent& content, const ZPoint& screenPosition, const ZWindow& window)
{
    const ZDeviceScale& scale = window.GetDeviceScale();
    const ZPoint size = scale.ToPixels(content.GetSize());
    const ZRect wanted = ZRect{0, 0, size.x, size.y}.Offset(screenPosition.x, screenPosition.y);
    const ZRect rect = keptOn(window.GetNativeWindow()->GetMonitor(screenPosition), wanted);
    if (rect.GetWidth() < size.x || rect.GetHeight() < size.y)
        content.SetSize(scale.ToUnits(ZPoint{rect.GetWidth(), rect.GetHeight()}));
    else
        content.SetSize(content.GetSize());
    const ZPoint pointer = window.ToScreen(window.GetLastMouse());
    content.StartAt(scale.ToUnits(ZPoint{pointer.x - rect.left, pointer.y - rect.top}));
    return rect;
}

/// Runs the menu until the user ends it, or until its window is hidden or destroyed.
void runMenu(ZMenuContent& content, ZContentWindow& popup, ZWindow& window)
{
    const auto windowLife = window.GetLife();
    const ZInterfaceThread thread;
    ZModalRun modal(thread.GetLoop(), window.GetApp());
    content.SetEnded([&modal] { modal.End(); });
    const auto timer = thread.GetLoop().AddTimer(kPollInterval, [&] {
        if (windowLife.expired() || !window.IsVisible())
            content.Dismiss();
        else if (content.ScrollByPointer())
            popup.Redraw();
    });
    const auto arming =
        thread.GetLoop().AddTimer(ZMenuContent::kArmingDelay, [&content] { content.ArmButtons(); });
    popup.Show();
    // If another program has grabbed the mouse, the menu works with the events that reach it.
    static_cast<void>(popup.GetNative().SetCapture(true));
    popup.GetNative().SetFocus();
    modal.Run();
    thread.GetLoop().Remove(timer);
    thread.GetLoop().Remove(arming);
    // Without this no window would have the focus. A window that took it from the menu keeps it.
    if (popup.HasFocus() && !windowLife.expired() && window.GetNativeWindow())
        window.GetNativeWindow()->SetFocus();
}

}  // namespace

std::optional<std::int32_t> ZMenuWindow::Show(const ZMenu& menu, const ZPoint& screenPosition,
                                              ZWindow* window)
{
    const ZNativeWindow* const owner = window ? window->GetNativeWindow() : nullptr;
    if (!owner || menu.GetItems().empty() || !ZInterfaceThread::IsCurrent())
        return std::nullopt;
    ZMenuContent content(menu);
    const auto popup = ZContentWindow::Create({.kind = ZNativeWindow::Kind::kPopup,
                                               .parent = owner->GetHandle(),
                                               .rect = placeMenu(content, screenPosition, *window),
                                               .title = {}},
                                              content, window->GetDeviceScale());
    if (!popup)
        return std::nullopt;
    runMenu(content, *popup, *window);
    return content.GetChosen();
}

}  // namespace orvane
