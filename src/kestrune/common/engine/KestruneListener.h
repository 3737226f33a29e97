// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneFineGeometry.h"
#include "kestrune/common/engine/KestruneHistory.h"

#include <cstdint>
#include <vector>

namespace orvane
{

/// Thins the input for the fine tracking. The coarse signal is low-passed, thinned and freed of
/// what lies under the frequency range; the middle signal is smoothed by two running means and
/// thinned less, and serves to measure a period exactly.
class KestruneListener
{
public:
    /// [setup]
    void Allocate(const KestruneFineGeometry& geometry);
    /// Sets the high pass to half the lowest frequency, in Hz. Histories and the filter's state
    /// stay, so that a change of range within a note leaves no trace. [audio thread]
    void SetLowest(float hz) noexcept;
    /// Silences the past; the next sample has this stream position. [audio thread]
    void Restart(std::int64_t position) noexcept;
    /// Takes in the next count samples, at most a block. [audio thread]
    void Listen(const float* mono, int count) noexcept;

    /// Index i stands for the stream position i * factor - filterDelay. [audio thread]
    [[nodiscard]] const KestruneHistory& Coarse() const noexcept { return mCoarse; }
    /// Index i stands for the stream position i * thin - (factor - 1). [audio thread]
    [[nodiscard]] const KestruneHistory& Middle() const noexcept { return mMiddle; }

private:
    /// Means of as many samples as the coarse signal is thinned by.
    class RunningMean
    {
    public:
        void Allocate(int length);
        void Restart() noexcept { mSum = 0.0; }
        /// Writes the mean of each of count samples and the length - 1 before it; as many as the
        /// length must be readable before samples. [audio thread]
        void Run(const float* samples, int count, float* means) noexcept;

    private:
        int mLength = 0;
        double mSum = 0.0;
    };

    [[nodiscard]] float HighPass(float sample) noexcept;

    KestruneFineGeometry mGeometry;
    std::int64_t mNext = 0;          // stream position of the next sample
    std::vector<float> mLowPass;     // taps
    std::vector<float> mRecent;      // as many samples as taps but one, then the block
    double mB[3] = {1.0, 0.0, 0.0};  // of the high pass
    double mA[2] = {0.0, 0.0};       // of the high pass, from the first delay on
    double mState[2] = {0.0, 0.0};   // of the high pass
    RunningMean mFirstMean;
    RunningMean mSecondMean;
    std::vector<float> mOnceSmoothed;   // as many samples as the mean's length, then the block
    std::vector<float> mTwiceSmoothed;  // the block
    KestruneHistory mCoarse;
    KestruneHistory mMiddle;
};

}  // namespace orvane
