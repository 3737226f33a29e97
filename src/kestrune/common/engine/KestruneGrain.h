// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneStereoRing.h"

#include <array>
#include <vector>

namespace orvane
{

/// One grain of the overlap-add synthesis: a windowed piece of the input around a pitch mark,
/// resampled for the formant shift and added to the output around another mark. Resampling each
/// grain moves the spectral envelope and leaves the distance of the marks, and so the pitch, alone.
/// Both channels share the window.
class KestruneGrain
{
public:
    /// Capacities in samples: of the grain with two closing zeros, and of its resampled form.
    /// [setup]
    void Allocate(int grainCapacity, int resampledCapacity);

    /// Cuts length samples around a mark of the input; mark is a stream position in samples.
    /// [audio thread]
    void Cut(const KestruneStereoRing& input, double mark, int length) noexcept;
    /// Adds the grain around a mark of the output, a stream position in samples. formantFactor
    /// (0.5 .. 2) is the factor by which the spectral envelope moves up. [audio thread]
    void AddTo(KestruneStereoRing& output, double mark, float formantFactor) noexcept;

private:
    /// Computes a window of length samples; its centre is delayed by fraction (0 .. 1) of a sample.
    /// Grains of two periods a period apart add up to the input.
    static void FillWindow(float* window, int length, float fraction) noexcept;
    /// Writes resampledLength samples of the channel's grain to mResampled, by linear
    /// interpolation. centre is the position in the grain that the middle of the result comes from.
    void Resample(int channel, int resampledLength, float formantFactor, float centre) noexcept;
    /// Resample for formantFactor 1: all samples move by the same offset, so that the compiler can
    /// vectorise the loop.
    void Shift(const float* grain, int length, float offset) noexcept;

    int mLength = 0;         // of the grain, without its closing zeros
    float mFraction = 0.0f;  // fractional part of the input mark, 0 .. 1
    std::vector<float> mGrainWindow;
    std::array<std::vector<float>, KestruneStereoRing::kChannels> mGrain;
    std::vector<float> mResampled;  // one channel's at a time
};

}  // namespace orvane
