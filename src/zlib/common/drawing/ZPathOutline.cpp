// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZPathOutline.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace orvane
{

namespace
{

using Kind = ZPathOutline::Segment::Kind;

ZPathPoint onCircle(const ZPathPoint& centre, float radius, float degrees)
{
    const double angle = degrees * (std::numbers::pi / 180.0);
    return {static_cast<float>(centre.x + radius * std::cos(angle)),
            static_cast<float>(centre.y + radius * std::sin(angle))};
}

}  // namespace

void ZPathOutline::JoinAt(const ZPathPoint& point)
{
    assert(!mOpen || !mSegments.empty());
    if (!mOpen)
        mSegments.push_back({Kind::kMove, point});
    else if (mSegments.back().point != point)
        mSegments.push_back({Kind::kLine, point});
    mOpen = true;
}

void ZPathOutline::AddLine(const ZPathPoint& from, const ZPathPoint& to)
{
    JoinAt(from);
    mSegments.push_back({Kind::kLine, to});
}

void ZPathOutline::AddArc(const ZPathPoint& centre, float radius, float startDegrees,
                          float sweepDegrees)
{
    const float sweep = std::clamp(sweepDegrees, -360.0f, 360.0f);
    if (!(radius > 0.0f) || sweep == 0.0f)
        return;
    const float start = std::fmod(startDegrees, 360.0f);
    JoinAt(onCircle(centre, radius, start));
    mSegments.push_back(
        {Kind::kArc, onCircle(centre, radius, start + sweep), centre, radius, start, sweep});
}

void ZPathOutline::Append(const ZPathOutline& other)
{
    if (other.IsEmpty())
        return;
    const std::vector<Segment> added = other.mSegments;
    const bool addedOpen = other.mOpen;
    assert(added.front().kind == Kind::kMove);
    JoinAt(added.front().point);
    mSegments.insert(mSegments.end(), added.begin() + 1, added.end());
    mOpen = addedOpen;
}

void ZPathOutline::Close()
{
    if (mOpen)
        mSegments.push_back({Kind::kClose, mSegments.back().point});
    mOpen = false;
}

void ZPathOutline::Clear()
{
    mSegments.clear();
    mOpen = false;
}

}  // namespace orvane
