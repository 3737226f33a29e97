// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZFileChooserWindow.h"

#include "zlib/common/controls/ZFileChooserContent.h"
#include "zlib/common/objects/ZEventLoop.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/views/ZContentWindow.h"

#include <cassert>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace orvane
{

namespace
{

// ZFileChooser shows this dialog where the desktop has none.
[[maybe_unused]] const auto dialogBefore = ZFileChooser::SetPlainDialog(&ZFileChooserWindow::Run);

std::filesystem::path homeFolder()
{
    const char* const home = std::getenv("HOME");
    return home && std::filesystem::path(home).is_absolute() ? home : "/";
}

void placeInMiddle(ZNativeWindow& window, const ZPoint& size)
{
    const ZRect monitor = window.GetMonitor({0, 0});
    window.SetRect(keptOn(monitor, ZRect{0, 0, size.x, size.y}.Offset(
                                       monitor.left + (monitor.GetWidth() - size.x) / 2,
                                       monitor.top + (monitor.GetHeight() - size.y) / 3)));
}

}  // namespace

std::optional<std::string> ZFileChooserWindow::Run(const ZFileRequest& request)
{
    assert(ZInterfaceThread::IsCurrent());
    ZFileChooserContent content(request, homeFolder());
    const ZDeviceScale scale(request.scale);
    const ZPoint size = scale.ToPixels(ZFileChooserContent::kSize);
    const auto window =
        ZContentWindow::Create({.kind = ZNativeWindow::Kind::kDialog,
                                .parent = static_cast<ZNativeHandle>(request.window),
                                .rect = {0, 0, size.x, size.y},
                                .title = request.title},
                               content, scale);
    if (!window)
        return std::nullopt;
    const ZInterfaceThread thread;
    ZModalRun run(thread.GetLoop(), request.owner);
    content.SetEnded([&run] { run.End(); });
    placeInMiddle(window->GetNative(), size);
    window->Show();
    run.Run();
    return content.GetChosen();
}

}  // namespace orvane
