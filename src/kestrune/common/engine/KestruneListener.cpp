// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneListener.h"

#include "kestrune/common/engine/KestruneCorrelation.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace orvane
{

namespace
{

/// Windowed sinc (raised cosine), 16 * factor + 1 taps that sum to 1; cut-off a little above half
/// the coarse rate, as the taps' slope begins under it.
std::vector<float> makeLowPass(int factor)
{
    constexpr double kCutOff = 0.26;  // of the coarse rate
    const int half = 8 * factor;
    const double cutOff = kCutOff / factor;
    std::vector<double> taps;
    double sum = 0.0;
    for (int i = -half; i <= half; ++i) {
        const double x = 2.0 * cutOff * i * std::numbers::pi;
        const double sinc = i == 0 ? 1.0 : std::sin(x) / x;
        taps.push_back(sinc * (0.5 + 0.5 * std::cos(std::numbers::pi * i / (half + 1))));
        sum += taps.back();
    }
    std::vector<float> scaled;
    for (const double tap : taps)
        scaled.push_back(static_cast<float>(tap / sum));
    return scaled;
}

}  // namespace

void KestruneListener::RunningMean::Allocate(int length)
{
    assert(length > 0);
    mLength = length;
    Restart();
}

void KestruneListener::RunningMean::Run(const float* samples, int count, float* means) noexcept
{
    // In double precision, so that rounding does not pile up in the sum of a loud signal.
    const double scale = 1.0 / mLength;
    double sum = mSum;
    for (int i = 0; i < count; ++i) {
        sum += static_cast<double>(samples[i]) - static_cast<double>(samples[i - mLength]);
        means[i] = static_cast<float>(sum * scale);
    }
    mSum = sum;
}

void KestruneListener::Allocate(const KestruneFineGeometry& geometry)
{
    assert(geometry.factor > 0 && geometry.blockSize > 0);
    mGeometry = geometry;
    mLowPass = makeLowPass(geometry.factor);
    mRecent.assign(mLowPass.size() - 1 + static_cast<std::size_t>(geometry.blockSize), 0.0f);
    mFirstMean.Allocate(geometry.factor);
    mSecondMean.Allocate(geometry.factor);
    mOnceSmoothed.assign(static_cast<std::size_t>(geometry.factor + geometry.blockSize), 0.0f);
    mTwiceSmoothed.assign(static_cast<std::size_t>(geometry.blockSize), 0.0f);
    mCoarse.Allocate(geometry.coarseLength);
    mMiddle.Allocate(geometry.middleLength);
}

void KestruneListener::SetLowest(float hz) noexcept
{
    assert(hz > 0.0f && hz < mGeometry.coarseRate);
    // Second-order Butterworth by the bilinear transform.
    const double w = std::tan(std::numbers::pi * 0.5 * static_cast<double>(hz) /
                              static_cast<double>(mGeometry.coarseRate));
    const double n = 1.0 / (1.0 + std::numbers::sqrt2 * w + w * w);
    mB[0] = n;
    mB[1] = -2.0 * n;
    mB[2] = n;
    mA[0] = 2.0 * (w * w - 1.0) * n;
    mA[1] = (1.0 - std::numbers::sqrt2 * w + w * w) * n;
}

void KestruneListener::Restart(std::int64_t position) noexcept
{
    assert(position >= 0);
    mNext = position;
    std::fill(mRecent.begin(), mRecent.end(), 0.0f);
    std::fill(std::begin(mState), std::end(mState), 0.0);
    std::fill(mOnceSmoothed.begin(), mOnceSmoothed.end(), 0.0f);
    mFirstMean.Restart();
    mSecondMean.Restart();
    const auto firstMultiple = [position](int step) { return (position + step - 1) / step; };
    mCoarse.Restart(firstMultiple(mGeometry.factor));
    mMiddle.Restart(firstMultiple(mGeometry.thin));
}

void KestruneListener::Listen(const float* mono, int count) noexcept
{
    assert(mono && count >= 0 && count <= mGeometry.blockSize);
    const auto taps = static_cast<int>(mLowPass.size());
    std::copy_n(mono, count, mRecent.begin() + (taps - 1));
    float* const onceSmoothed = mOnceSmoothed.data() + mGeometry.factor;
    mFirstMean.Run(mRecent.data() + (taps - 1), count, onceSmoothed);
    mSecondMean.Run(onceSmoothed, count, mTwiceSmoothed.data());
    // Both steps are powers of 2.
    const auto first = [this](int step) { return static_cast<int>(-mNext & (step - 1)); };
    for (int i = first(mGeometry.thin); i < count; i += mGeometry.thin)
        mMiddle.Append(mTwiceSmoothed[static_cast<std::size_t>(i)]);
    for (int i = first(mGeometry.factor); i < count; i += mGeometry.factor)
        mCoarse.Append(
            HighPass(static_cast<float>(dotProduct(mLowPass.data(), mRecent.data() + i, taps))));
    mNext += count;
    std::copy_n(mRecent.begin() + count, taps - 1, mRecent.begin());
    std::copy_n(mOnceSmoothed.begin() + count, mGeometry.factor, mOnceSmoothed.begin());
}

float KestruneListener::HighPass(float sample) noexcept
{
    // Transposed direct form 2: its state may stay when the coefficients change.
    const auto x = static_cast<double>(sample);
    const double y = mB[0] * x + mState[0];
    mState[0] = mB[1] * x - mA[0] * y + mState[1];
    mState[1] = mB[2] * x - mA[1] * y;
    return static_cast<float>(y);
}

}  // namespace orvane
