// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestrunePeriodRefiner.h"

#include "kestrune/common/engine/KestruneCorrelation.h"
#include "kestrune/common/engine/KestruneHistory.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>

namespace orvane
{

namespace
{

constexpr double kRefinedSeconds = 0.012;
constexpr double kLongestLagSeconds = 0.010;  // at several periods
constexpr int kReach = 3;
constexpr double kReachOfPeriod = 0.04;
constexpr int kReachAtMultiple = 2;
constexpr double kMostLossOfClarity = 0.1;

int reachFor(double period)
{
    return kReach + static_cast<int>(kReachOfPeriod * period);
}

/// The correlation of a stretch of samples with the one that begins a lag later. Lags are best
/// asked for in steps of a few samples: the energy of the later stretch is carried on.
class Stretch
{
public:
    Stretch(const float* samples, int length, int firstLag)
        : mSamples(samples)
        , mLength(length)
        , mEnergy(dotProduct(samples, samples, length))
        , mLag(firstLag)
        , mLaterEnergy(dotProduct(samples + firstLag, samples + firstLag, length))
    {
    }

    [[nodiscard]] double At(int lag)
    {
        for (; mLag < lag; ++mLag)
            mLaterEnergy += Square(mLag + mLength) - Square(mLag);
        for (; mLag > lag; --mLag)
            mLaterEnergy += Square(mLag - 1) - Square(mLag - 1 + mLength);
        return normalisedCorrelation(dotProduct(mSamples, mSamples + lag, mLength), mEnergy,
                                     mLaterEnergy);
    }

private:
    [[nodiscard]] double Square(int at) const
    {
        const auto sample = static_cast<double>(mSamples[at]);
        return sample * sample;
    }

    const float* mSamples;
    int mLength;
    double mEnergy;
    int mLag;
    double mLaterEnergy;
};

}  // namespace

void KestrunePeriodRefiner::Allocate(const KestruneFineGeometry& geometry)
{
    mGeometry = geometry;
}

int KestrunePeriodRefiner::LengthFor(double period) const noexcept
{
    const double least = kRefinedSeconds * static_cast<double>(mGeometry.middleRate);
    return std::max(static_cast<int>(least), static_cast<int>(period));
}

int KestrunePeriodRefiner::CostOf(float period) const noexcept
{
    // Every second lag within the reach and some around the top; the rest is done for short periods
    // only.
    constexpr int kMoreLags = 6;
    const double coarse = static_cast<double>(period) / mGeometry.thin;
    const int lags = reachFor(coarse) + kMoreLags;
    return 1 + lags * correlationInstructions(LengthFor(coarse)) / kInstructionsOfUnit;
}

KestruneRefinedPeriod KestrunePeriodRefiner::Refine(const KestruneHistory& middle, double time,
                                                    float period) const noexcept
{
    assert(period > 0.0f);
    const double coarse = static_cast<double>(period) / mGeometry.thin;
    const Peak first = FindPeak(middle, time, coarse, reachFor(coarse), coarse);
    const auto clarity = static_cast<float>(std::min(first.height, 1.0));
    if (!first.found)
        return {period, clarity};

    double refined = first.lag;
    const double longest = kLongestLagSeconds * static_cast<double>(mGeometry.middleRate);
    for (int multiple = 2; multiple * refined <= longest; multiple *= 2) {
        const Peak peak = FindPeak(middle, time, multiple * refined, kReachAtMultiple, refined);
        if (!peak.found || peak.height < first.height - kMostLossOfClarity)
            break;
        refined = peak.lag / multiple;
    }
    return {static_cast<float>(refined * mGeometry.thin), clarity};
}

KestrunePeriodRefiner::Peak KestrunePeriodRefiner::FindPeak(const KestruneHistory& middle,
                                                            double time, double lag, int reach,
                                                            double period) const noexcept
{
    const int length = LengthFor(period);
    const auto centre = static_cast<int>(std::lround(lag));
    const double moment = (time + mGeometry.factor - 1) / mGeometry.thin;
    const auto start =
        static_cast<std::int64_t>(std::floor(moment - (centre + length) / 2.0 + 0.5));
    const int lowest = std::max(1, centre - reach);
    Stretch stretch(middle.From(start), length, lowest);

    const int highest = centre + reach;
    const int step = reach > 2 ? 2 : 1;
    int best = lowest;
    double height = stretch.At(lowest);
    int last = lowest;
    for (int at = lowest + step; at <= highest; at += step) {
        const double value = stretch.At(at);
        last = at;
        if (value > height) {
            height = value;
            best = at;
        }
    }
    if (best == lowest || best == last)
        return {false, 0.0, height};
    double left = stretch.At(best - 1);
    double right = stretch.At(best + 1);
    if (left > height || right > height) {
        const int towards = left > right ? -1 : 1;
        best += towards;
        const double beyond = stretch.At(best + towards);
        const double before = height;
        height = std::max(left, right);
        left = towards < 0 ? beyond : before;
        right = towards < 0 ? before : beyond;
    }
    const ParabolaTop top(left, height, right);
    return {true, best + top.offset, top.height};
}

}  // namespace orvane
