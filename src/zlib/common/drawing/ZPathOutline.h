// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

namespace orvane
{

/// An end point of lines and arcs, in pixels.
struct ZPathPoint
{
    float x = 0.0f;
    float y = 0.0f;

    bool operator==(const ZPathPoint&) const = default;
};

/// Figures of lines and arcs. A line or arc that is added while a figure is open is joined to the
/// figure's end by a line; otherwise it begins a figure. The even-odd rule decides what is inside.
/// [interface thread]
class ZPathOutline
{
public:
    struct Segment
    {
        enum class Kind
        {
            kMove,   // begins a figure at point; the first segment of each
            kLine,   // to point
            kArc,    // around centre to point
            kClose,  // a line to the figure's beginning; ends the figure
        };

        Kind kind;
        ZPathPoint point;
        ZPathPoint centre = {};
        float radius = 0.0f;
        float startDegrees = 0.0f;  // 0 points right, 90 down
        float sweepDegrees = 0.0f;  // positive is clockwise; at most a full turn
    };

    void AddLine(const ZPathPoint& from, const ZPathPoint& to);
    /// Adds nothing if the radius is not positive or the sweep is 0.
    void AddArc(const ZPathPoint& centre, float radius, float startDegrees, float sweepDegrees);
    /// Adds all figures of other, which may be this outline; the first one joins the open figure.
    void Append(const ZPathOutline& other);
    void Close();
    void Clear();

    [[nodiscard]] bool IsEmpty() const { return mSegments.empty(); }
    [[nodiscard]] std::span<const Segment> GetSegments() const { return mSegments; }

private:
    /// Draws the open figure on to point, or begins a figure there.
    void JoinAt(const ZPathPoint& point);

    std::vector<Segment> mSegments;
    bool mOpen = false;
};

}  // namespace orvane
