// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/measure/PitchTracker.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr double kWindowSeconds = 0.03;
constexpr double kLowestHz = 130.0;
constexpr double kHighestHz = 1000.0;
constexpr double kThreshold = 0.15;  // share of aperiodic power above which there is no pitch
constexpr double kSmoothSeconds = 0.00012;

/// Replaces each sample by the mean of those within reach. This removes high frequencies that carry
/// no useful harmonic and make the parabola fit the dips badly.
std::vector<float> smoothed(std::span<const float> samples, std::size_t reach)
{
    std::vector<float> out(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const std::size_t first = i > reach ? i - reach : 0;
        const std::size_t last = std::min(i + reach, samples.size() - 1);
        float sum = 0.0f;
        for (std::size_t j = first; j <= last; ++j)
            sum += samples[j];
        out[i] = sum / static_cast<float>(last - first + 1);
    }
    return out;
}

/// Offset from the middle of the minimum of the parabola through three neighbours.
double dipOffset(double before, double middle, double after)
{
    const double curvature = before - 2.0 * middle + after;
    return curvature > 0.0 ? 0.5 * (before - after) / curvature : 0.0;
}

}  // namespace

PitchTracker::PitchTracker(std::span<const float> samples, double sampleRate)
    : mSampleRate(sampleRate)
    , mWindow(static_cast<std::size_t>(kWindowSeconds * sampleRate))
    , mShortestLag(static_cast<std::size_t>(sampleRate / kHighestHz))
    , mLongestLag(static_cast<std::size_t>(sampleRate / kLowestHz))
{
    assert(sampleRate > 2.0 * kHighestHz);
    const auto reach = static_cast<std::size_t>(std::lround(kSmoothSeconds * sampleRate));
    const std::vector<float> once = smoothed(samples, reach);
    mSmoothed = smoothed(once, reach);
}

double PitchTracker::difference(std::size_t centre, std::size_t lag) const
{
    assert(centre >= (mWindow + lag) / 2);
    assert(centre - (mWindow + lag) / 2 + lag + mWindow <= mSmoothed.size());
    // Both stretches are centred on the same sample, so that all lags measure the same time.
    const float* early = mSmoothed.data() + centre - (mWindow + lag) / 2;
    const float* late = early + lag;
    double sum = 0.0;
    for (std::size_t i = 0; i < mWindow; ++i) {
        const double step = early[i] - late[i];
        sum += step * step;
    }
    return sum;
}

std::vector<double> PitchTracker::normalizedDifferences(std::size_t centre) const
{
    std::vector<double> values(mLongestLag + 2, 1.0);
    double total = 0.0;
    for (std::size_t lag = 1; lag < values.size(); ++lag) {
        const double value = difference(centre, lag);
        total += value;
        values[lag] = total > 0.0 ? value * static_cast<double>(lag) / total : 1.0;
    }
    return values;
}

std::optional<double> PitchTracker::at(double seconds) const
{
    const auto centre = static_cast<std::size_t>(std::max(0.0, seconds * mSampleRate));
    const std::size_t reach = (mWindow + mLongestLag) / 2 + 2;
    if (centre < reach || centre + reach >= mSmoothed.size())
        return std::nullopt;
    const std::vector<double> values = normalizedDifferences(centre);
    // Take the first dip that is deep enough: multiples of the period have dips, too.
    std::size_t lag = mShortestLag;
    while (lag <= mLongestLag && values[lag] > kThreshold)
        ++lag;
    while (lag <= mLongestLag && values[lag + 1] < values[lag])
        ++lag;
    if (lag > mLongestLag)
        return std::nullopt;
    const double offset = dipOffset(difference(centre, lag - 1), difference(centre, lag),
                                    difference(centre, lag + 1));
    return mSampleRate / (static_cast<double>(lag) + offset);
}

}  // namespace orvane
