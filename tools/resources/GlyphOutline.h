// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>
#include <vector>

namespace orvane
{

struct PixelGlyph;

/// A corner of an outline, in pixels: x to the right from the glyph's left edge, y upwards from the
/// base line.
struct OutlinePoint
{
    int x;
    int y;

    friend auto operator<=>(const OutlinePoint&, const OutlinePoint&) = default;
};

using OutlineContour = std::vector<OutlinePoint>;

/// The outlines of a glyph's ink as closed polygons. The ink lies to the right of each edge, as
/// TrueType requires, so holes run counterclockwise. Pixels that touch only at a corner get
/// separate polygons. Empty for a glyph without ink.
[[nodiscard]] std::vector<OutlineContour> traceOutline(const PixelGlyph& glyph);

}  // namespace orvane
