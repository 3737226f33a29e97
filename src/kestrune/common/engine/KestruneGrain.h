// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneStereoRing.h"

#include <array>
#include <vector>

namespace orvane
{

/// One grain of the resynthesis: a windowed piece of the input around a mark, resampled for the
/// formant shift and added to the output around another mark. Both channels share the window.
class KestruneGrain
{
public:
    /// Capacities in samples: of the grain with two closing zeros, and of its resampled form.
    /// [setup]
    void Allocate(int grainCapacity, int resampledCapacity);

    /// Cuts length samples around a mark of the input, in stream samples. [audio thread]
    void Cut(const KestruneStereoRing& input, double mark, int length) noexcept;
    /// Adds the grain, resampled by formantFactor (0.5 .. 2; its spectral envelope moves up by
    /// that factor), around a mark of the output, in stream samples. [audio thread]
    void AddTo(KestruneStereoRing& output, double mark, float formantFactor) noexcept;

private:
    /// The window of length samples whose middle lies fraction (0 .. 1) of a sample late.
    ///
    /// w(u) = (1 + 1.125 cos(pi u) - 0.125 cos(3 pi u)) / 2 for u in -1 .. 1, computed as
    /// t^2 (3 - 2 t) with t = cos^2(pi u / 2), which is the same by cos(3 a) = 4 cos^3 a - 3 cos a.
    /// w(u) + w(u - 1) = 1, so grains of two periods a period apart add up to the input.
    static void FillWindow(float* window, int length, float fraction) noexcept;
    void Resample(int channel, int resampledLength, float formantFactor, float centre) noexcept;
    /// Resample at the unit ratio: every sample moves by one offset, which runs in vector
    /// registers.
    void Shift(const float* grain, int length, float offset) noexcept;

    int mLength = 0;
    float mFraction = 0.0f;  // of the input mark, 0 .. 1
    std::vector<float> mGrainWindow;
    std::array<std::vector<float>, KestruneStereoRing::kChannels> mGrain;
    std::vector<float> mResampled;  // of one channel at a time
};

}  // namespace orvane
