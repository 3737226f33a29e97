// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMenuWindow.h"

#include "zlib/common/controls/ZMenuContent.h"
#include "zlib/common/controls/ZMenuLevels.h"
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

/// Runs the menu until the user ends it, or until its window is hidden or destroyed.
void runMenu(ZModalRun& modal, ZMenuLevels& levels, ZContentWindow& popup, ZWindow& window)
{
    const auto windowLife = window.GetLife();
    const ZInterfaceThread thread;
    const auto timer = thread.GetLoop().AddTimer(kPollInterval, [&] {
        if (windowLife.expired() || !window.IsVisible())
            levels.Dismiss();
        else
            levels.Poll();
    });
    const auto arming =
        thread.GetLoop().AddTimer(ZMenuContent::kArmingDelay, [&levels] { levels.ArmButtons(); });
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
    const ZInterfaceThread thread;
    ZModalRun modal(thread.GetLoop(), window->GetApp());
    ZMenuLevels levels(window->GetDeviceScale(), [&modal] { modal.End(); });
    ZContentWindow* const popup =
        levels.Open(menu, screenPosition, owner->GetHandle(), owner->GetMonitor(screenPosition),
                    window->ToScreen(window->GetLastMouse()));
    if (!popup)
        return std::nullopt;
    runMenu(modal, levels, *popup, *window);
    return levels.GetChosen();
}

}  // namespace orvane
