// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneCorrelation.h"

#include "zdsp/common/ZDotProduct.h"

#include <algorithm>
#include <cassert>

namespace orvane
{

namespace
{

/// Chosen when the library is loaded.
const ZDotProduct::Function kDot = ZDotProduct::Fastest();

}  // namespace

double dotProduct(const float* a, const float* b, int count) noexcept
{
    return kDot(a, b, count);
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
