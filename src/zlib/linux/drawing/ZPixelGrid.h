// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZRect.h"
#include "zlib/linux/drawing/ZCairo.h"

namespace orvane
{

/// Edges in units of a context.
struct ZEdges
{
    double left;
    double top;
    double right;
    double bottom;
};

/// Whether the transform of the context only translates.
[[nodiscard]] bool onlyTranslates(cairo_t* context);
/// Returns the rectangle's edges; moved to the nearest edges of pixels where scale, the surface's
/// device scale, is not 1 and the transform only translates. What is not empty keeps a pixel.
[[nodiscard]] ZEdges edgesOnPixels(cairo_t* context, const ZRect& rect, double scale);
/// The same in pixels of the surface. The transform only translates.
[[nodiscard]] ZRect nearestPixels(cairo_t* context, const ZEdges& edges, double scale);

}  // namespace orvane
