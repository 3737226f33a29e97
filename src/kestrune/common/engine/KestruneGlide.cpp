// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneGlide.h"

#include <cassert>
#include <cmath>

namespace orvane
{

void KestruneGlide::SetTime(float seconds, float sampleRate, int blockSize) noexcept
{
    constexpr float kErrorLeft = 0.25f;
    mSmoothing = 0.0f;
    if (seconds > 0.0f)
        mSmoothing = std::pow(kErrorLeft, static_cast<float>(blockSize) / (sampleRate * seconds));
}

float KestruneGlide::Step(float wanted) noexcept
{
    assert(wanted > 0.0f);
    mRatio = (1.0f - mSmoothing) * wanted + mSmoothing * mRatio;
    return mRatio;
}

}  // namespace orvane
