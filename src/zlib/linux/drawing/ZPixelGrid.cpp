// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/drawing/ZPixelGrid.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>

namespace orvane
{

namespace
{

cairo_matrix_t matrixOf(cairo_t* context)
{
    cairo_matrix_t matrix;
    cairo_get_matrix(context, &matrix);
    return matrix;
}

std::int32_t nearest(double value)
{
    return static_cast<std::int32_t>(std::floor(within(value) + 0.5));
}

}  // namespace

bool onlyTranslates(cairo_t* context)
{
    const cairo_matrix_t matrix = matrixOf(context);
    return matrix.xx == 1.0 && matrix.yy == 1.0 && matrix.xy == 0.0 && matrix.yx == 0.0;
}

ZRect nearestPixels(cairo_t* context, const ZEdges& edges, double scale)
{
    assert(scale > 0.0 && onlyTranslates(context));
    const cairo_matrix_t matrix = matrixOf(context);
    ZRect pixels{
        nearest((edges.left + matrix.x0) * scale), nearest((edges.top + matrix.y0) * scale),
        nearest((edges.right + matrix.x0) * scale), nearest((edges.bottom + matrix.y0) * scale)};
    if (edges.right > edges.left)
        pixels.right = std::max(pixels.right, pixels.left + 1);
    if (edges.bottom > edges.top)
        pixels.bottom = std::max(pixels.bottom, pixels.top + 1);
    return pixels;
}

ZEdges edgesOnPixels(cairo_t* context, const ZRect& rect, double scale)
{
    const ZEdges edges{within(rect.left), within(rect.top), within(rect.right),
                       within(rect.bottom)};
    if (scale == 1.0 || !onlyTranslates(context))
        return edges;
    const cairo_matrix_t matrix = matrixOf(context);
    const ZRect pixels = nearestPixels(context, edges, scale);
    return {pixels.left / scale - matrix.x0, pixels.top / scale - matrix.y0,
            pixels.right / scale - matrix.x0, pixels.bottom / scale - matrix.y0};
}

}  // namespace orvane
