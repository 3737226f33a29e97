// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneGrain.h"

#include "kestrune/common/engine/KestruneGrainWindow.h"
#include "zdsp/common/ZVectorClones.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

void KestruneGrain::Allocate(int grainCapacity, int resampledCapacity)
{
    assert(grainCapacity > 0 && resampledCapacity > 0);
    mLength = 0;
    mGrainWindow.assign(static_cast<std::size_t>(grainCapacity), 0.0f);
    for (auto& channel : mGrain)
        channel.assign(static_cast<std::size_t>(grainCapacity), 0.0f);
    mResampled.assign(static_cast<std::size_t>(resampledCapacity), 0.0f);
}

ORVANE_VECTOR_CLONES
void KestruneGrain::FillWindow(float* window, int length, float fraction) noexcept
{
    const auto span = static_cast<float>(length + 1);
    for (int i = 0; i < length; ++i) {
        const float u = 2.0f * (static_cast<float>(i + 1) - fraction) / span - 1.0f;
        window[i] = kestruneGrainWindow(u);
    }
}

ORVANE_VECTOR_CLONES
void KestruneGrain::Cut(const KestruneStereoRing& input, double mark, int length) noexcept
{
    assert(length > 0 && length + 2 <= static_cast<int>(mGrainWindow.size()));
    const KestruneMarkPosition position(mark);
    mLength = length;
    mFraction = position.fraction;
    FillWindow(mGrainWindow.data(), length, mFraction);

    const int start = input.Index(position.sample - length / 2);
    for (int channel = 0; channel < KestruneStereoRing::kChannels; ++channel) {
        float* const grain = mGrain[static_cast<std::size_t>(channel)].data();
        input.Read(channel, start, length, grain);
        for (int i = 0; i < length; ++i)
            grain[i] *= mGrainWindow[static_cast<std::size_t>(i)];
        // Interpolation reads one sample beyond the end, and two when formants move down.
        grain[length] = 0.0f;
        grain[length + 1] = 0.0f;
    }
}

void KestruneGrain::AddTo(KestruneStereoRing& output, double mark, float formantFactor) noexcept
{
    assert(formantFactor >= 0.5f && formantFactor <= 2.0f);
    const KestruneMarkPosition position(mark);
    const int length = static_cast<int>(static_cast<float>(mLength) / formantFactor);
    assert(length <= static_cast<int>(mResampled.size()));
    const float centre = static_cast<float>(mLength) * 0.5f + mFraction - position.fraction;
    const int start = output.Index(position.sample - length / 2);
    for (int channel = 0; channel < KestruneStereoRing::kChannels; ++channel) {
        Resample(channel, length, formantFactor, centre);
        output.Add(channel, start, length, mResampled.data());
    }
}

void KestruneGrain::Resample(int channel, int resampledLength, float formantFactor,
                             float centre) noexcept
{
    const float* const grain = mGrain[static_cast<std::size_t>(channel)].data();
    float* const resampled = mResampled.data();
    const float middle = static_cast<float>(resampledLength) * 0.5f;
    if (formantFactor == 1.0f)
        return Shift(grain, resampledLength, centre - middle);
    for (int k = 0; k < resampledLength; ++k) {
        const float x = (static_cast<float>(k) - middle) * formantFactor + centre;
        // Rounding can put the first sample just before the grain.
        const int j = std::max(static_cast<int>(x), 0);
        const float r = x - static_cast<float>(j);
        resampled[k] = grain[j] + r * (grain[j + 1] - grain[j]);
    }
}

ORVANE_VECTOR_CLONES
void KestruneGrain::Shift(const float* grain, int length, float offset) noexcept
{
    float* const resampled = mResampled.data();
    const int whole = static_cast<int>(std::floor(offset));
    int k = 0;
    for (; k + whole < 0; ++k)
        resampled[k] = grain[0] + (static_cast<float>(k) + offset) * (grain[1] - grain[0]);
    const float* const from = grain + whole;
    for (; k < length; ++k) {
        // The same rounding as in Resample. Near a whole number this may use the neighbouring
        // interval, which gives the same value.
        const float r = (static_cast<float>(k) + offset) - static_cast<float>(k + whole);
        resampled[k] = from[k] + r * (from[k + 1] - from[k]);
    }
}

}  // namespace orvane
