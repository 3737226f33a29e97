// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/GlyphOutline.h"

#include "tools/resources/PixelFont.h"

#include <cassert>
#include <iterator>
#include <map>

namespace orvane
{

namespace
{

/// The edges that belong to no contour yet, by their start point.
using OpenEdges = std::multimap<OutlinePoint, OutlinePoint>;

/// The sides of all ink pixels that have paper on the other side, directed clockwise.
OpenEdges bordersOfInk(const PixelGlyph& glyph)
{
    OpenEdges edges;
    for (int row = 0; row < PixelFont::kRows; ++row) {
        for (int column = 0; column < glyph.width(); ++column) {
            if (!glyph.isInk(column, row))
                continue;
            const int top = PixelFont::kRowsAboveBaseline - row;
            const OutlinePoint topLeft{column, top};
            const OutlinePoint topRight{column + 1, top};
            const OutlinePoint bottomLeft{column, top - 1};
            const OutlinePoint bottomRight{column + 1, top - 1};
            if (!glyph.isInk(column, row - 1))
                edges.emplace(topLeft, topRight);
            if (!glyph.isInk(column + 1, row))
                edges.emplace(topRight, bottomRight);
            if (!glyph.isInk(column, row + 1))
                edges.emplace(bottomRight, bottomLeft);
            if (!glyph.isInk(column - 1, row))
                edges.emplace(bottomLeft, topLeft);
        }
    }
    return edges;
}

OutlinePoint stepBetween(const OutlinePoint& from, const OutlinePoint& to)
{
    return {to.x - from.x, to.y - from.y};
}

bool turnsRight(const OutlinePoint& step, const OutlinePoint& next)
{
    return step.x * next.y - step.y * next.x < 0;
}

/// Removes an edge that starts at a point and returns its end. Where two pixels meet at a corner,
/// two edges start; the one that turns right belongs to the pixel whose outline is being followed.
OutlinePoint takeEdge(OpenEdges& edges, const OutlinePoint& from, const OutlinePoint& step)
{
    auto [edge, end] = edges.equal_range(from);
    assert(edge != end);  // every point has as many edges out as in
    if (std::next(edge) != end && !turnsRight(step, stepBetween(from, edge->second)))
        ++edge;
    const OutlinePoint to = edge->second;
    edges.erase(edge);
    return to;
}

OutlineContour takeContour(OpenEdges& edges)
{
    // The smallest point is the lowest of the leftmost ones, so it is always a corner.
    const OutlinePoint start = edges.begin()->first;
    OutlineContour contour{start};
    OutlinePoint at = takeEdge(edges, start, {0, 1});
    OutlinePoint step = stepBetween(start, at);
    while (at != start) {
        const OutlinePoint next = takeEdge(edges, at, step);
        const OutlinePoint nextStep = stepBetween(at, next);
        if (nextStep != step)
            contour.push_back(at);
        at = next;
        step = nextStep;
    }
    return contour;
}

}  // namespace

std::vector<OutlineContour> traceOutline(const PixelGlyph& glyph)
{
    OpenEdges edges = bordersOfInk(glyph);
    std::vector<OutlineContour> contours;
    while (!edges.empty())
        contours.push_back(takeContour(edges));
    return contours;
}

}  // namespace orvane
