// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZDotProduct.h"

#include <cassert>

namespace orvane
{

namespace
{

double dotPlain(const float* a, const float* b, int count) noexcept
{
    assert(count >= 0);
    // Several sums side by side: the compiler may not change the order of one sum by itself.
    constexpr int kPartialSums = 8;
    float sums[kPartialSums] = {};
    int i = 0;
    for (; i + kPartialSums <= count; i += kPartialSums)
        for (int lane = 0; lane < kPartialSums; ++lane)
            sums[lane] += a[i + lane] * b[i + lane];
    double total = 0.0;
    for (const float sum : sums)
        total += static_cast<double>(sum);
    for (; i < count; ++i)
        total += static_cast<double>(a[i]) * static_cast<double>(b[i]);
    return total;
}

}  // namespace

ZDotProduct::Function ZDotProduct::Plain() noexcept
{
    return dotPlain;
}

}  // namespace orvane
