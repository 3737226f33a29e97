// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/WindowShot.h"

#include <string>

namespace orvane
{

/// The plug-in's window as it starts, with one of its menus open and the pointer on an item: what
/// no host can ask for. view is the menu's name in the description, item a place in its list.
/// Needs no display. Throws ZException -1 where there is no such menu.
[[nodiscard]] WindowPixels drawOpenMenu(const std::string& view, std::int32_t item);

}  // namespace orvane
