// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZFloatMode.h"

#include <xmmintrin.h>

namespace orvane
{

namespace
{

constexpr std::uint32_t kFlushResultsToZero = 1u << 15;
constexpr std::uint32_t kTakeOperandsForZero = 1u << 6;
constexpr std::uint32_t kNoTraps = 0x3fu << 7;  // with all other bits 0: round to the nearest

}  // namespace

ZFloatMode::ZFloatMode() noexcept
    : mBefore(_mm_getcsr())
{
    _mm_setcsr(kNoTraps | kFlushResultsToZero | kTakeOperandsForZero);
}

ZFloatMode::~ZFloatMode()
{
    _mm_setcsr(mBefore);
}

}  // namespace orvane
