// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZPath.h"

#include <cstddef>

namespace orvane
{

namespace
{

ZPathPoint pathPointOf(const ZPoint& point)
{
    return {static_cast<float>(point.x), static_cast<float>(point.y)};
}

}  // namespace

void ZPath::AddSegment(const ZPathPoint& from, const ZPathPoint& to)
{
    mOutline.AddLine(from, to);
    mLast = to;
}

void ZPath::MoveTo(const ZPoint& point)
{
    mOutline.Close();
    AddSegment(pathPointOf(point), pathPointOf(point));
}

void ZPath::LineTo(const ZPoint& point)
{
    AddSegment(mLast, pathPointOf(point));
}

void ZPath::AddLine(const ZPoint& from, const ZPoint& to)
{
    AddSegment(pathPointOf(from), pathPointOf(to));
}

void ZPath::AddLines(std::span<const ZPoint> points)
{
    for (std::size_t i = 1; i < points.size(); ++i)
        AddLine(points[i - 1], points[i]);
}

void ZPath::AddArc(const ZPoint& centre, std::int32_t radius, std::int32_t startDegrees,
                   std::int32_t sweepDegrees)
{
    mOutline.AddArc(pathPointOf(centre), static_cast<float>(radius),
                    static_cast<float>(startDegrees % 360), static_cast<float>(sweepDegrees));
    if (!mOutline.IsEmpty())
        mLast = mOutline.GetSegments().back().point;
}

void ZPath::AddPoints(std::span<const ZPathPoint> points)
{
    for (std::size_t i = 1; i < points.size(); ++i)
        AddSegment(points[i - 1], points[i]);
}

void ZPath::Reset()
{
    mOutline.Clear();
    mLast = {};
}

}  // namespace orvane
