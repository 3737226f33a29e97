// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZPath.h"

#include <cstddef>

namespace orvane
{

namespace
{

ZPathPoint toPathPoint(const ZPoint& point)
{
    return {static_cast<float>(point.x), static_cast<float>(point.y)};
}

}  // namespace

void ZPath::AddSegment(const ZPathPoint& from, const ZPathPoint& to)
{
    if (mOutline.IsEmpty())
        mStart = from;
    mOutline.AddLine(from, to);
    mLast = to;
    ++mSegmentCount;
}

void ZPath::MoveTo(const ZPoint& point)
{
    mOutline.Close();
    mStart = toPathPoint(point);
    AddSegment(mStart, mStart);
}

void ZPath::LineTo(const ZPoint& point)
{
    AddSegment(mLast, toPathPoint(point));
}

void ZPath::AddLine(const ZPoint& from, const ZPoint& to)
{
    AddSegment(toPathPoint(from), toPathPoint(to));
}

void ZPath::AddLines(std::span<const ZPoint> points)
{
    for (std::size_t i = 1; i < points.size(); ++i)
        AddLine(points[i - 1], points[i]);
}

void ZPath::AddArc(const ZPoint& centre, std::int32_t radius, std::int32_t startDegrees,
                   std::int32_t sweepDegrees)
{
    const std::size_t before = mOutline.GetSegments().size();
    mOutline.AddArc(toPathPoint(centre), static_cast<float>(radius),
                    static_cast<float>(startDegrees % 360), static_cast<float>(sweepDegrees));
    const auto segments = mOutline.GetSegments();
    if (segments.size() == before)
        return;
    if (before == 0)
        mStart = segments.front().point;
    mLast = segments.back().point;
    ++mSegmentCount;
}

void ZPath::AddPoints(std::span<const ZPathPoint> points)
{
    for (std::size_t i = 1; i < points.size(); ++i)
        AddSegment(points[i - 1], points[i]);
}

std::vector<ZPathPoint> ZPath::GetPoints() const
{
    std::vector<ZPathPoint> points;
    for (const ZPathOutline::Segment& segment : mOutline.GetSegments()) {
        if (segment.kind != ZPathOutline::Segment::Kind::kClose)
            points.push_back(segment.point);
    }
    return points;
}

void ZPath::Reset()
{
    mOutline.Clear();
    mStart = {};
    mLast = {};
    mSegmentCount = 0;
}

}  // namespace orvane
