// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

namespace orvane
{

/// A place in pixels between which lines and arcs run.
struct ZPathPoint
{
    float x = 0.0f;
    float y = 0.0f;

    bool operator==(const ZPathPoint&) const = default;
};

/// Figures of lines and arcs. A line or arc that is added while a figure is open is joined to its
/// end by a line; else it begins a figure. What lies inside is told by the even-odd rule.
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
            kClose,  // a line to the figure's beginning, which ends it
        };

        Kind kind;
        ZPathPoint point;
        ZPathPoint centre = {};
        float radius = 0.0f;
        float startDegrees = 0.0f;  // 0 is to the right, 90 down
        float sweepDegrees = 0.0f;  // positive is clockwise, within a full turn
    };

    void AddLine(const ZPathPoint& from, const ZPathPoint& to);
    /// A radius that is not positive, or no sweep, adds nothing.
    void AddArc(const ZPathPoint& centre, float radius, float startDegrees, float sweepDegrees);
    /// Adds all figures of other, which may be this one; the first is joined to the open figure.
    void Append(const ZPathOutline& other);
    void Close();
    void Clear();

    [[nodiscard]] bool IsEmpty() const { return mSegments.empty(); }
    [[nodiscard]] std::span<const Segment> GetSegments() const { return mSegments; }

private:
    /// Brings the end of the open figure to point, or begins one there.
    void ComeTo(const ZPathPoint& point);

    std::vector<Segment> mSegments;
    bool mOpen = false;
};

}  // namespace orvane
