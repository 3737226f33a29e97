// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"

#include <cstdint>
#include <optional>

namespace orvane
{

class ZMenu;
class ZWindow;

/// Shows a menu in a popup window. Show() is the ZMenu::Presenter that is used unless
/// ZMenu::SetPresenter() has set another one.
class ZMenuWindow
{
public:
    /// Runs the menu modally, with the interface lock released, and returns the index of the chosen
    /// item. Returns nothing if the user chose nothing, if the window's application ended the modal
    /// run, or if the window was hidden or destroyed meanwhile; also, without opening a menu, on
    /// any other thread, for a menu without items, and for a window without a native window.
    /// [interface thread]
    [[nodiscard]] static std::optional<std::int32_t>
    Show(const ZMenu& menu, const ZPoint& screenPosition, ZWindow* window);
};

}  // namespace orvane
