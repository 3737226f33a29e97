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

// How fast items scroll under a pointer that rests on an arrow, and how soon the menu notices that
// its window is no longer to be seen.
constexpr std::chrono::milliseconds kBeat{70};

/// Gives the content its size and says where on the screen it lies.
ZRect place(ZMenuContent& content, const ZPoint& screenPosition, const ZWindow& window)
{
    const ZRect wanted = ZRect{0, 0, content.GetSize().x, content.GetSize().y}.Offset(
        screenPosition.x, screenPosition.y);
    const ZRect rect = keptOn(window.GetNativeWindow()->GetMonitor(screenPosition), wanted);
    content.SetSize({rect.GetWidth(), rect.GetHeight()});
    const ZPoint pointer = window.ToScreen(window.GetLastMouse());
    content.StartAt({pointer.x - rect.left, pointer.y - rect.top});
    return rect;
}

/// Waits for the user's choice in a menu that its window, too, may end.
void run(ZMenuContent& content, ZContentWindow& popup, ZWindow& window)
{
    const auto windowLife = window.GetLife();
    const ZInterfaceThread thread;
    ZModalRun modal(thread.GetLoop(), window.GetApp());
    content.SetEnded([&modal] { modal.End(); });
    const auto beat = thread.GetLoop().AddTimer(kBeat, [&] {
        if (windowLife.expired() || !window.IsVisible())
            content.Dismiss();
        else if (content.Tick())
            popup.Redraw();
    });
    popup.Show();
    // Where another program holds the mouse the menu still works by what reaches it.
    static_cast<void>(popup.GetNative().SetCapture(true));
    popup.GetNative().SetFocus();
    modal.Run();
    thread.GetLoop().Remove(beat);
    // The system would leave the keys with nobody; but who has taken them meanwhile keeps them.
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
                                               .rect = place(content, screenPosition, *window),
                                               .title = {}},
                                              content);
    if (!popup)
        return std::nullopt;
    run(content, *popup, *window);
    return content.GetChosen();
}

}  // namespace orvane
