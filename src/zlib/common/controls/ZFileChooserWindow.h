// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZFileChooser.h"

#include <optional>
#include <string>

namespace orvane
{

/// Shows the plain file dialog in a window, for desktops where no program for it is installed.
class ZFileChooserWindow
{
public:
    /// Returns the full path that the user chooses; no value when the user cancels, the owner ends
    /// the run or there is no display. Starts in the user's home folder. Gives up the interface
    /// lock while it is open. [interface thread]
    [[nodiscard]] static std::optional<std::string> Run(const ZFileRequest& request);
};

}  // namespace orvane
