// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/WindowShot.h"

#include <cstdint>
#include <string>

namespace orvane
{

/// A menu of the plug-in's window, which no host can ask for.
struct MenuShot
{
    enum class Kind
    {
        kOwn,      // that a click on the view opens
        kContext,  // that the right button opens over the view
    };

    Kind kind = Kind::kOwn;
    std::string view;       // its name in the description
    std::int32_t item = 0;  // under the pointer, an index into the menu's list, from 0
    double scale = 1.0;     // pixels on the side of a unit
};

/// Draws the plug-in's window in its initial state with the menu open, and the submenu of the item.
/// Needs no display. Throws ZException when there is no such menu.
[[nodiscard]] WindowPixels drawOpenMenu(const MenuShot& shot);

}  // namespace orvane
