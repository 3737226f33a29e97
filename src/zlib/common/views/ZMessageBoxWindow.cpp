// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZMessageBoxWindow.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/views/ZContentWindow.h"
#include "zlib/common/views/ZMessageBoxContent.h"
#include "zlib/common/views/ZWindowScale.h"

namespace orvane
{

namespace
{

/// Asks for a place a little above the middle of the monitor; a window manager may choose another.
void placeOnMonitor(ZNativeWindow& window, const ZPoint& size)
{
    const ZRect monitor = window.GetMonitor({0, 0});
    const ZRect middle =
        ZRect{0, 0, size.x, size.y}.Offset(monitor.left + (monitor.GetWidth() - size.x) / 2,
                                           monitor.top + (monitor.GetHeight() - size.y) / 3);
    window.SetRect(keptOn(monitor, middle));
}

}  // namespace

void ZMessageBoxWindow::Install()
{
    ZMessageBox::SetModalPresenter(&ZMessageBoxWindow::Show);
}

bool ZMessageBoxWindow::Show(ZMessageBox::Kind kind, const ZString& title, const ZString& text)
{
    if (ZApp::CountInstances() == 0)
        return false;
    ZMessageBoxContent content(kind, text);
    // The box belongs to no application, so the display alone decides.
    const ZDeviceScale scale = ZWindowScale().Find(nullptr);
    const ZPoint size = scale.ToPixels(content.GetSize());
    const auto window = ZContentWindow::Create({.kind = ZNativeWindow::Kind::kDialog,
                                                .parent = 0,
                                                .rect = {0, 0, size.x, size.y},
                                                .title = title,
                                                .modal = true},
                                               content, scale);
    if (!window)
        return false;
    const ZInterfaceThread thread;
    // For the same reason only the end of the last one ends the run.
    ZModalRun run(thread.GetLoop(), nullptr);
    content.SetEnded([&run] { run.End(); });
    placeOnMonitor(window->GetNative(), size);
    window->Show();
    run.Run();
    return true;
}

}  // namespace orvane
