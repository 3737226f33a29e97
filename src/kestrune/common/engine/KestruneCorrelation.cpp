// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneCorrelation.h"

#include <algorithm>
#include <cassert>

namespace orvane
{

double dotProduct(const float* a, const float* b, int count) noexcept
{
    assert(count >= 0);
    // Several sums side by side: the compiler may not change the order of one sum by itself.
    constexpr int kLanes = 8;
    float sums[kLanes] = {};
    int i = 0;
    for (; i + kLanes <= count; i += kLanes)
        for (int lane = 0; lane < kLanes; ++lane)
            sums[lane] += a[i + lane] * b[i + lane];
    double total = 0.0;
    for (const float sum : sums)
        total += static_cast<double>(sum);
    for (; i < count; ++i)
        total += static_cast<double>(a[i]) * static_cast<double>(b[i]);
    return total;
}

double normalisedCorrelation(double product, double energyA, double energyB) noexcept
{
    constexpr double kFloor = 1.0e-12;  // silence is unrelated to silence
    return 2.0 * product / (energyA + energyB + kFloor);
}

ParabolaTop::ParabolaTop(double left, double middle, double right) noexcept
    : offset(0.0)
    , height(middle)
{
    const double bend = left - 2.0 * middle + right;
    if (bend < 0.0) {
        offset = std::clamp(0.5 * (left - right) / bend, -1.0, 1.0);
        height = middle - 0.25 * (left - right) * offset;
    }
    height = std::min(height, 1.0);
}

}  // namespace orvane
