// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/GlyphOutline.h"

#include "tools/resources/PixelFont.h"

#include <iterator>
#include <map>

namespace orvane
{

namespace
{

/// The edges that no walk has taken yet, by the point they start from.
using OpenEdges = std::multimap<OutlinePoint, OutlinePoint>;

/// The four sides of each pixel of ink, clockwise, where the neighbour is paper.
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

/// Takes an edge that starts at a point. Where two pixels meet at a corner there are two of them,
/// and the turn to the right stays with the pixel that the walk goes around.
OutlinePoint takeEdge(OpenEdges& edges, const OutlinePoint& from, const OutlinePoint& step)
{
    auto [edge, end] = edges.equal_range(from);
    if (std::next(edge) != end && !turnsRight(step, stepBetween(from, edge->second)))
        ++edge;
    const OutlinePoint to = edge->second;
    edges.erase(edge);
    return to;
}

OutlineContour takeContour(OpenEdges& edges)
{
    // The first point in order is the lowest of the leftmost ones, and so always a corner.
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
