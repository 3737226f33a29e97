// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"

#include <cstdint>
#include <optional>

namespace orvane
{

class ZMenu;
class ZWindow;

/// Shows a menu in a window of its own: a ZMenu::Presenter, and the one in force where there is no
/// other.
class ZMenuWindow
{
public:
    /// Waits for the user's choice, on the interface thread and with the interface lock given up.
    /// None at once on another thread, for a menu without items, and where the window has none of
    /// the system's. The run belongs to the window's application, and none is chosen when that ends
    /// it, or the window is hidden or goes. [interface thread]
    [[nodiscard]] static std::optional<std::int32_t>
    Show(const ZMenu& menu, const ZPoint& screenPosition, ZWindow* window);
};

}  // namespace orvane
