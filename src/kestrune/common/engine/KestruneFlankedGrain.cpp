// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneFlankedGrain.h"

#include "kestrune/common/engine/KestruneGrainWindow.h"
#include "kestrune/common/engine/KestruneStereoRing.h"
#include "zdsp/common/ZVectorClones.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr int kLowestFormantsStretch = 2;  // of a grain whose formants move an octave down

/// Weights of four samples for the value between the middle two, t (0 .. 1) after the second one:
/// cubic interpolation (E. Catmull and R. Rom, 1974). A straight line would dull the voice by as
/// much as its mark lies between samples, so that each grain would sound different.
struct CubicWeights
{
    explicit CubicWeights(float t) noexcept
        : before(((1.0f - 0.5f * t) * t - 0.5f) * t)
        , left((1.5f * t - 2.5f) * t * t + 1.0f)
        , right(((2.0f - 1.5f * t) * t + 0.5f) * t)
        , after((0.5f * t - 0.5f) * t * t)
    {
    }

    [[nodiscard]] float Between(const float* x) const noexcept
    {
        return (before * x[0] + left * x[1]) + (right * x[2] + after * x[3]);
    }

    float before;
    float left;
    float right;
    float after;
};

}  // namespace

void KestruneFlankedGrain::Allocate(int longestFlank)
{
    assert(longestFlank > 0);
    mLongestFlank = longestFlank;
    const std::size_t length = 2 * static_cast<std::size_t>(longestFlank) + 6;
    mInput.assign(length, 0.0f);
    mWindow.assign(kLowestFormantsStretch * length, 0.0f);
    mOutput.assign(kLowestFormantsStretch * length, 0.0f);
}

ORVANE_VECTOR_CLONES
void KestruneFlankedGrain::Add(const KestruneStereoRing& input, double inputMark,
                               KestruneStereoRing& output, double outputMark, Flanks flanks,
                               float formantFactor) noexcept
{
    assert(flanks.left > 0.0 && flanks.left <= mLongestFlank);
    assert(flanks.right > 0.0 && flanks.right <= mLongestFlank);
    assert(formantFactor >= 0.5f && formantFactor <= 2.0f);
    const KestruneMarkPosition from(inputMark);
    const KestruneMarkPosition to(outputMark);
    const auto factor = static_cast<double>(formantFactor);
    const auto toFraction = static_cast<double>(to.fraction);
    const auto first = static_cast<int>(std::ceil(toFraction - flanks.left / factor));
    const auto last = static_cast<int>(std::floor(toFraction + flanks.right / factor));
    const int count = last - first + 1;
    assert(count <= static_cast<int>(mWindow.size()));
    FillWindow(first, count, to.fraction, flanks, formantFactor);

    // Positions in the input, from the second of the samples that the first value lies between.
    const double begin = static_cast<double>(from.fraction) + (first - toFraction) * factor;
    const double whole = std::floor(begin);
    const auto offset = static_cast<float>(begin - whole);
    const int length = static_cast<int>(static_cast<double>(offset) + (count - 1) * factor) + 4;
    assert(length <= static_cast<int>(mInput.size()));
    const int source = input.Index(from.sample + static_cast<long long>(whole) - 1);
    const int target = output.Index(to.sample + first);
    const CubicWeights weights(offset);
    for (int channel = 0; channel < KestruneStereoRing::kChannels; ++channel) {
        input.Read(channel, source, length, mInput.data());
        const float* const in = mInput.data();
        float* const out = mOutput.data();
        if (formantFactor == 1.0f)
            for (int k = 0; k < count; ++k)
                out[k] = weights.Between(in + k);
        else
            for (int k = 0; k < count; ++k) {
                const float position = offset + static_cast<float>(k) * formantFactor;
                const auto j = static_cast<int>(position);
                out[k] = CubicWeights(position - static_cast<float>(j)).Between(in + j);
            }
        const float* const window = mWindow.data();
        for (int k = 0; k < count; ++k)
            out[k] *= window[k];
        output.Add(channel, target, count, out);
    }
}

ORVANE_VECTOR_CLONES
void KestruneFlankedGrain::FillWindow(int first, int count, float fraction, Flanks flanks,
                                      float formantFactor) noexcept
{
    float* const window = mWindow.data();
    const auto fill = [&](int begin, int end, double flank) {
        const float scale = formantFactor / static_cast<float>(flank);
        for (int k = begin; k < end; ++k)
            window[k] = kestruneGrainWindow((static_cast<float>(first + k) - fraction) * scale);
    };
    // The first sample at or behind the mark.
    const int middle = std::clamp((fraction > 0.0f ? 1 : 0) - first, 0, count);
    fill(0, middle, flanks.left);
    fill(middle, count, flanks.right);
}

}  // namespace orvane
