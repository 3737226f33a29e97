// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/WindowShot.h"

#include <string>

namespace orvane
{

/// Draws the plug-in's window in its initial state with a menu open and the pointer on an item,
/// which no host can ask for. view is the menu's name in the description, item an index into its
/// list, from 0. Needs no display. Throws ZException when there is no such menu.
[[nodiscard]] WindowPixels drawOpenMenu(const std::string& view, std::int32_t item);

}  // namespace orvane
