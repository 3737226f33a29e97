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
    float sums[kPartialDotProducts] = {};
    int i = 0;
    for (; i + kPartialDotProducts <= count; i += kPartialDotProducts)
        for (int lane = 0; lane < kPartialDotProducts; ++lane)
            sums[lane] += a[i + lane] * b[i + lane];
    return ZDotProduct::AddUp(sums, a + i, b + i, count - i);
}

}  // namespace

ZDotProduct::Function ZDotProduct::Plain() noexcept
{
    return dotPlain;
}

double ZDotProduct::AddUp(const float (&sums)[kPartialDotProducts], const float* a, const float* b,
                          int left) noexcept
{
    double total = 0.0;
    for (const float sum : sums)
        total += static_cast<double>(sum);
    for (int i = 0; i < left; ++i)
        total += static_cast<double>(a[i]) * static_cast<double>(b[i]);
    return total;
}

}  // namespace orvane
