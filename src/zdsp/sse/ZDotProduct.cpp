// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZDotProduct.h"

#include <immintrin.h>

#include <cassert>

namespace orvane
{

namespace
{

/// Without fused multiply-add, which rounds once where the plain form rounds twice.
[[gnu::target("avx2")]] double dotAvx2(const float* a, const float* b, int count) noexcept
{
    assert(count >= 0);
    __m256 lanes = _mm256_setzero_ps();
    int i = 0;
    for (; i + kPartialDotProducts <= count; i += kPartialDotProducts)
        lanes = _mm256_add_ps(lanes, _mm256_mul_ps(_mm256_loadu_ps(a + i), _mm256_loadu_ps(b + i)));
    float sums[kPartialDotProducts];
    _mm256_storeu_ps(sums, lanes);
    return ZDotProduct::AddUp(sums, a + i, b + i, count - i);
}

}  // namespace

ZDotProduct::Function ZDotProduct::Fastest() noexcept
{
    return __builtin_cpu_supports("avx2") ? dotAvx2 : Plain();
}

}  // namespace orvane
