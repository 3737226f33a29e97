// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZErrorDialog.h"

#include "zlib/linux/documents/ZDesktopProgram.h"

#include <utility>
#include <vector>

namespace orvane
{

bool startErrorDialog(const std::string& title, const std::string& text)
{
    if (!hasDisplay())
        return false;
    const std::vector<std::string> dialogs[] = {
        {"zenity", "--error", "--no-markup", "--title=" + title, "--text=" + text},
        {"kdialog", "--title", title, "--error", text},
        {"xmessage", "-title", title, text},
    };
    for (const auto& dialog : dialogs) {
        const auto path = findProgram(dialog.front());
        if (!path)
            continue;
        // setsid forks and exits at once: the dialog is no child of the host, and nobody waits.
        std::vector<std::string> arguments = {"setsid", "--fork", *path};
        arguments.insert(arguments.end(), dialog.begin() + 1, dialog.end());
        const ZDesktopProgram starter(std::move(arguments));
        return starter.HasStarted();
    }
    return false;
}

}  // namespace orvane
