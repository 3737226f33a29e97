// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZPathOutline.h"
#include "zlib/common/objects/ZPoint.h"

#include <cstdint>
#include <span>
#include <vector>

namespace orvane
{

/// Builds polygons and arcs, to be stroked, filled or clipped to. [interface thread]
class ZPath
{
public:
    ZPath() = default;
    ZPath(const ZPath&) = delete;
    ZPath& operator=(const ZPath&) = delete;
    virtual ~ZPath() = default;

    [[nodiscard]] virtual const ZPathOutline& GetNative() const { return mOutline; }

    /// Closes the open figure and begins one with a line of no length at the point.
    virtual void MoveTo(const ZPoint& point);
    /// A line from the end of what was added last.
    virtual void LineTo(const ZPoint& point);
    virtual void AddLine(const ZPoint& from, const ZPoint& to);
    /// Lines from each point to the next; fewer than two points add nothing.
    virtual void AddLines(std::span<const ZPoint> points);
    /// Part of a circle. Angles in degrees: 0 to the right, and clockwise for a positive sweep. A
    /// radius that is not positive adds nothing.
    virtual void AddArc(const ZPoint& centre, std::int32_t radius, std::int32_t startDegrees,
                        std::int32_t sweepDegrees);
    /// As AddLines, between pixels.
    virtual void AddPoints(std::span<const ZPathPoint> points);
    /// Where each figure begins and each segment ends, in the order they were added.
    [[nodiscard]] virtual std::vector<ZPathPoint> GetPoints() const;
    virtual void Reset();

    [[nodiscard]] const ZPathPoint& GetStartPoint() const { return mStart; }
    [[nodiscard]] const ZPathPoint& GetLastPoint() const { return mLast; }
    /// Lines and arcs that were added; MoveTo adds one.
    [[nodiscard]] std::int32_t GetSegmentCount() const { return mSegmentCount; }

private:
    void AddSegment(const ZPathPoint& from, const ZPathPoint& to);

    ZPathOutline mOutline;
    ZPathPoint mStart;
    ZPathPoint mLast;
    std::int32_t mSegmentCount = 0;
};

}  // namespace orvane
