// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace orvane
{

/// A value over time that rests and moves: smooth steps, level at both ends, from each knot to the
/// next. Before the first knot and after the last the value stays.
class ControlTrack
{
public:
    [[nodiscard]] bool isEmpty() const { return mKnots.empty(); }
    /// Appends a knot; a time before the last one's counts as the last one's.
    void add(double seconds, double value);
    [[nodiscard]] double at(double seconds) const;
    /// The value of the last knot; there must be one.
    [[nodiscard]] double last() const { return mKnots.back().value; }

private:
    struct Knot
    {
        double seconds;
        double value;
    };

    std::vector<Knot> mKnots;
};

}  // namespace orvane
