// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/singer/ControlTrack.h"

#include <algorithm>
#include <cassert>

namespace orvane
{

void ControlTrack::add(double seconds, double value)
{
    if (!mKnots.empty())
        seconds = std::max(seconds, mKnots.back().seconds);
    mKnots.push_back({seconds, value});
}

double ControlTrack::at(double seconds) const
{
    assert(!mKnots.empty());
    const auto later = [](double time, const Knot& knot) { return time < knot.seconds; };
    const auto next = std::upper_bound(mKnots.begin(), mKnots.end(), seconds, later);
    if (next == mKnots.begin())
        return next->value;
    const auto before = next - 1;
    if (next == mKnots.end())
        return before->value;
    const double place = (seconds - before->seconds) / (next->seconds - before->seconds);
    const double smooth = place * place * (3.0 - 2.0 * place);
    return before->value + (next->value - before->value) * smooth;
}

}  // namespace orvane
