// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneFlankedGrain.h"

#include "kestrune/common/engine/KestruneGrainWindow.h"
#include "kestrune/common/engine/KestruneStereoRing.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr int kLowestFormantsStretch = 2;  // of a grain whose formants move an octave down

}  // namespace

void KestruneFlankedGrain::Allocate(int longestFlank)
{
    assert(longestFlank > 0);
    mLongestFlank = longestFlank;
    const std::size_t length = 2 * static_cast<std::size_t>(longestFlank) + 4;
    mInput.assign(length, 0.0f);
    mWindow.assign(kLowestFormantsStretch * length, 0.0f);
    mOutput.assign(kLowestFormantsStretch * length, 0.0f);
}

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

    // Positions in the input, from the sample before the first one that is read.
    const double begin = static_cast<double>(from.fraction) + (first - toFraction) * factor;
    const double whole = std::floor(begin);
    const auto offset = static_cast<float>(begin - whole);
    const int length = static_cast<int>(static_cast<double>(offset) + (count - 1) * factor) + 2;
    assert(length <= static_cast<int>(mInput.size()));
    const int source = input.Index(from.sample + static_cast<long long>(whole));
    const int target = output.Index(to.sample + first);
    for (int channel = 0; channel < KestruneStereoRing::kChannels; ++channel) {
        input.Read(channel, source, length, mInput.data());
        const float* const in = mInput.data();
        float* const out = mOutput.data();
        if (formantFactor == 1.0f)
            for (int k = 0; k < count; ++k)
                out[k] = in[k] + offset * (in[k + 1] - in[k]);
        else
            for (int k = 0; k < count; ++k) {
                const float position = offset + static_cast<float>(k) * formantFactor;
                const auto j = static_cast<int>(position);
                out[k] = in[j] + (position - static_cast<float>(j)) * (in[j + 1] - in[j]);
            }
        const float* const window = mWindow.data();
        for (int k = 0; k < count; ++k)
            out[k] *= window[k];
        output.Add(channel, target, count, out);
    }
}

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
