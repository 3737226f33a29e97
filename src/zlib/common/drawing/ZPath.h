// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZPathOutline.h"
#include "zlib/common/objects/ZPoint.h"

#include <cstdint>
#include <span>

namespace orvane
{

/// Builds polygons and arcs to stroke, fill or clip to. [interface thread]
class ZPath
{
public:
    ZPath() = default;
    ZPath(const ZPath&) = delete;
    ZPath& operator=(const ZPath&) = delete;
    virtual ~ZPath() = default;

    [[nodiscard]] virtual const ZPathOutline& GetNative() const { return mOutline; }

    /// Closes the open figure and begins a new one with a line of no length at the point.
    virtual void MoveTo(const ZPoint& point);
    /// Adds a line from the end of the last line or arc.
    virtual void LineTo(const ZPoint& point);
    virtual void AddLine(const ZPoint& from, const ZPoint& to);
    /// Adds lines from each point to the next; fewer than two points add nothing.
    virtual void AddLines(std::span<const ZPoint> points);
    /// Adds part of a circle. Angles in degrees: 0 points right, a positive sweep runs clockwise. A
    /// radius that is not positive adds nothing.
    virtual void AddArc(const ZPoint& centre, std::int32_t radius, std::int32_t startDegrees,
                        std::int32_t sweepDegrees);
    /// As AddLines, with points that need not be whole pixels.
    virtual void AddPoints(std::span<const ZPathPoint> points);
    virtual void Reset();

private:
    void AddSegment(const ZPathPoint& from, const ZPathPoint& to);

    ZPathOutline mOutline;
    ZPathPoint mLast;  // end of the last line or arc
};

}  // namespace orvane
