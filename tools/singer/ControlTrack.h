// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace orvane
{

/// A value over time, given by knots. Between two knots it follows a cubic with a slope of 0 at
/// both; before the first knot and after the last it is constant.
class ControlTrack
{
public:
    [[nodiscard]] bool isEmpty() const { return mKnots.empty(); }
    /// Appends a knot; a time before that of the last knot is moved to it.
    void add(double seconds, double value);
    /// The value at a time; there must be a knot.
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
