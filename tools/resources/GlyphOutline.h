// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>
#include <vector>

namespace orvane
{

struct PixelGlyph;

/// A corner of an outline, in pixels: x from the glyph's left edge, y upwards from the base line.
struct OutlinePoint
{
    int x;
    int y;

    friend auto operator<=>(const OutlinePoint&, const OutlinePoint&) = default;
};

using OutlineContour = std::vector<OutlinePoint>;

/// The borders of a glyph's ink: closed polygons of corners alone, with the ink to the right of
/// each edge as TrueType wants it, so a hole turns the other way. Pixels that touch only at a
/// corner stay apart. Empty for a glyph without ink.
[[nodiscard]] std::vector<OutlineContour> traceOutline(const PixelGlyph& glyph);

}  // namespace orvane
