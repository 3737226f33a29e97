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
#pragma GCC unroll 4
    for (; i + kPartialDotProducts <= count; i += kPartialDotProducts)
        lanes = _mm256_add_ps(lanes, _mm256_mul_ps(_mm256_loadu_ps(a + i), _mm256_loadu_ps(b + i)));
    const __m256d four = _mm256_add_pd(_mm256_cvtps_pd(_mm256_castps256_ps128(lanes)),
                                       _mm256_cvtps_pd(_mm256_extractf128_ps(lanes, 1)));
    const __m128d two = _mm_add_pd(_mm256_castpd256_pd128(four), _mm256_extractf128_pd(four, 1));
    const double sum = _mm_cvtsd_f64(_mm_add_sd(two, _mm_unpackhi_pd(two, two)));
    return ZDotProduct::AddProducts(sum, a + i, b + i, count - i);
}

}  // namespace

ZDotProduct::Function ZDotProduct::Fastest() noexcept
{
    return __builtin_cpu_supports("avx2") ? dotAvx2 : Plain();
}

}  // namespace orvane
