// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZDotProduct.h"

#include <algorithm>
#include <cassert>
#include <iterator>

namespace orvane
{

namespace
{

double dotPlain(const float* a, const float* b, int count) noexcept
{
    assert(count >= 0);
    float sums[kPartialDotProducts] = {};
    int i = 0;
#pragma GCC unroll 4
    for (; i + kPartialDotProducts <= count; i += kPartialDotProducts)
        for (int lane = 0; lane < kPartialDotProducts; ++lane)
            sums[lane] += a[i + lane] * b[i + lane];
    double added[kPartialDotProducts];
    std::copy(std::begin(sums), std::end(sums), added);
    for (int distance = kPartialDotProducts / 2; distance > 0; distance /= 2)
        for (int lane = 0; lane < distance; ++lane)
            added[lane] += added[lane + distance];
    return ZDotProduct::AddProducts(added[0], a + i, b + i, count - i);
}

}  // namespace

ZDotProduct::Function ZDotProduct::Plain() noexcept
{
    return dotPlain;
}

}  // namespace orvane
