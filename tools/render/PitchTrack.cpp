// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PitchTrack.h"

#include "tools/render/ScaleGrid.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdlib>

namespace orvane
{

namespace
{

constexpr double kShortestWindowSeconds = 0.010;
constexpr double kLongestPeriodSeconds = 0.050;
constexpr float kQuietest = 3.2e-4f;     // -70 dB
constexpr float kQuietestShare = 0.01f;  // -40 dB
constexpr float kLeastPeriodicity = 0.6f;
constexpr double kSteadyCents = 80.0;

double centsApart(float a, float b)
{
    return std::fabs(1200.0 * std::log2(static_cast<double>(a) / static_cast<double>(b)));
}

/// The smallest value that at least the given share of the values does not exceed. Reorders values.
std::optional<double> quantile(std::vector<double>& values, double share)
{
    assert(share >= 0.0 && share <= 1.0);
    if (values.empty())
        return std::nullopt;
    const auto at =
        static_cast<std::ptrdiff_t>(std::ceil(share * static_cast<double>(values.size())) - 1.0);
    const auto place = values.begin() + std::max<std::ptrdiff_t>(at, 0);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

}  // namespace

PitchTrack::PitchTrack(int rate, int longestBlock, int pitchReference)
    : mRate(rate)
    , mPitchReference(pitchReference)
    , mRing(static_cast<std::size_t>(rate + longestBlock), 0.0f)
{
    assert(rate > 0 && longestBlock > 0);
    assert(pitchReference >= 0 && pitchReference <= 2);
}

float PitchTrack::DetectorInput(const StereoBlock& block, std::size_t i) const
{
    if (mPitchReference == 0 || mPitchReference == 1)
        return block[static_cast<std::size_t>(mPitchReference)][i];
    return 0.5f * block[0][i] + 0.5f * block[1][i];
}

void PitchTrack::Feed(const StereoBlock& block, int count)
{
    assert(count >= 0 && static_cast<std::size_t>(count) <= block[0].size());
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
        mRing[static_cast<std::size_t>(mFed++) % mRing.size()] = DetectorInput(block, i);
}

void PitchTrack::AddInput(std::span<const PitchReading> readings)
{
    for (const PitchReading& reading : readings) {
        if (reading.frame >= 0)
            mPoints.push_back(Examine(reading));
    }
}

void PitchTrack::AddOutput(std::span<const PitchReading> readings)
{
    for (const PitchReading& reading : readings) {
        if (reading.frame >= 0 && mOutputs < mPoints.size())
            mPoints[mOutputs++].outputHz = reading.hz;
    }
}

double PitchTrack::At(std::int64_t frame) const
{
    if (frame < 0 || frame >= mFed)
        return 0.0;
    return static_cast<double>(mRing[static_cast<std::size_t>(frame) % mRing.size()]);
}

PitchTrack::Window PitchTrack::Measure(std::int64_t first, int count) const
{
    assert(count > 0);
    double sum = 0.0;
    double squares = 0.0;
    for (int i = 0; i < count; ++i) {
        const double sample = At(first + i);
        sum += sample;
        squares += sample * sample;
    }
    const double mean = sum / count;
    return {mean, std::sqrt(std::max(squares / count - mean * mean, 0.0))};
}

double PitchTrack::Correlation(std::int64_t first, int lag, int count, double mean) const
{
    assert(lag > 0 && count > 0);
    double product = 0.0;
    double early = 0.0;
    double late = 0.0;
    for (int i = 0; i < count; ++i) {
        const double a = At(first + i) - mean;
        const double b = At(first + i + lag) - mean;
        product += a * b;
        early += a * a;
        late += b * b;
    }
    return early > 0.0 && late > 0.0 ? product / std::sqrt(early * late) : 0.0;
}

PitchPoint PitchTrack::Examine(const PitchReading& reading) const
{
    assert(reading.hz > 0.0f);
    const double rate = mRate;
    const double periodSeconds =
        std::min(1.0 / static_cast<double>(reading.hz), kLongestPeriodSeconds);
    const int period = static_cast<int>(periodSeconds * rate + 0.5);
    const int count = static_cast<int>(std::max(periodSeconds, kShortestWindowSeconds) * rate);
    const std::int64_t first = reading.frame - (count + period) / 2;
    const Window window = Measure(first, count + period);

    // The period is not a whole number of samples; at high pitches half a sample matters.
    double periodicity = 0.0;
    for (const int lag : {period - 1, period, period + 1})
        periodicity = std::max(periodicity, Correlation(first, lag, count, window.mean));
    return {static_cast<double>(reading.frame) / rate,
            reading.hz,
            0.0f,
            static_cast<float>(window.level),
            static_cast<float>(periodicity),
            false};
}

void PitchTrack::Finish(std::int64_t frames)
{
    const double end = static_cast<double>(frames) / mRate;
    std::erase_if(mPoints, [end](const PitchPoint& p) { return p.seconds >= end; });
    float loudest = 0.0f;
    for (const PitchPoint& point : mPoints)
        loudest = std::max(loudest, point.level);
    const float quietest = std::max(kQuietest, loudest * kQuietestShare);
    for (std::size_t i = 0; i < mPoints.size(); ++i) {
        PitchPoint& point = mPoints[i];
        point.isVoiced =
            point.level >= quietest && point.periodicity >= kLeastPeriodicity && IsSteady(i);
    }
}

bool PitchTrack::IsSteady(std::size_t i) const
{
    const auto isNear = [this, i](std::size_t other) {
        return other < mPoints.size() &&
               centsApart(mPoints[i].inputHz, mPoints[other].inputHz) <= kSteadyCents;
    };
    return isNear(i + 1) || (i > 0 && isNear(i - 1));
}

ScaleDistance distanceFromScale(std::span<const PitchPoint> points, const ScaleGrid& grid,
                                float PitchPoint::*pitch)
{
    std::vector<double> cents;
    for (const PitchPoint& point : points) {
        if (point.isVoiced && point.*pitch > 0.0f)
            cents.push_back(grid.CentsOff(static_cast<double>(point.*pitch)));
    }
    return {quantile(cents, 0.5), quantile(cents, 0.95)};
}

}  // namespace orvane
