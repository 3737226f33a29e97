// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"

#include <cairo/cairo.h>

#include <algorithm>
#include <memory>

namespace orvane
{

/// Releases a reference to an object of Cairo.
struct CairoFreer
{
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
    void operator()(cairo_region_t* region) const { cairo_region_destroy(region); }
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};

template <typename T>
using CairoPointer = std::unique_ptr<T, CairoFreer>;

/// Cairo's coordinates are 24.8 bit fixed point and wrap round beyond. With this limit the sum of a
/// coordinate and an origin stays inside.
inline constexpr double kFarthest = 4.0e6;

/// Clamps a coordinate to what Cairo can take; NaN becomes -kFarthest.
inline double within(double coordinate)
{
    return coordinate > -kFarthest ? std::min(coordinate, kFarthest) : -kFarthest;
}

inline void setColor(cairo_t* context, const ZColor& color)
{
    cairo_set_source_rgba(context, color.red / 255.0, color.green / 255.0, color.blue / 255.0,
                          color.alpha / 255.0);
}

}  // namespace orvane
