// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZString.h"

namespace orvane
{

/// Shows message boxes in windows of the system. [interface thread]
class ZMessageBoxWindow
{
public:
    /// Makes ZMessageBox show its modal boxes by Show. [setup]
    static void Install();

    /// Waits, with the interface lock given up, until the user has closed the box or the last
    /// application of the process ends. False at once where there is no display or no application.
    [[nodiscard]] static bool Show(ZMessageBox::Kind kind, const ZString& title,
                                   const ZString& text);
};

}  // namespace orvane
