// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZString.h"

namespace orvane
{

/// Shows message boxes in windows of the system.
class ZMessageBoxWindow
{
public:
    /// Makes this the way in which ZMessageBox shows boxes modally. [setup]
    static void Install();

    /// Returns when the user has closed the box, or the last application of the process goes; the
    /// interface lock is given up meanwhile. False at once where there is no display, or no
    /// application any more. [interface thread]
    [[nodiscard]] static bool Show(ZMessageBox::Kind kind, const ZString& title,
                                   const ZString& text);
};

}  // namespace orvane
