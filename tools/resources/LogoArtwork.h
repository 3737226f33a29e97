// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cairo.h>

namespace orvane
{

class PixelFont;

/// Paints the product's name, in letters of our own, 135 x 20 pixels.
void paintProductLogo(cairo_t* context);

/// Paints the maker's sign, a vane in a ring, over the maker's name, 31 x 27 pixels.
void paintMakerLogo(cairo_t* context, const PixelFont& font);

}  // namespace orvane
