// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cairo.h>

namespace orvane
{

class PixelFont;

/// Paints the product's name in letters drawn for it, 135 x 20 pixels.
void paintProductLogo(cairo_t* context);

/// Paints the maker's logo, a vane in a ring above the maker's name, 31 x 27 pixels.
void paintMakerLogo(cairo_t* context, const PixelFont& font);

}  // namespace orvane
