// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestrunePitchCandidates.h"

#include "kestrune/common/engine/KestruneCorrelation.h"
#include "kestrune/common/engine/KestruneHistory.h"
#include "kestrune/common/engine/KestruneLevelGate.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace orvane
{

namespace
{

constexpr float kStretchSeconds = 0.030f;
/// A longer lag's peak is wide enough to be found by every second lag.
constexpr int kEvenLagsFrom = 160;
/// A shorter lag's peak may be so narrow that a parabola through samples beside its top misses its
/// height: harmonics with much power make it so. Then the doubled period would seem clearer.
constexpr int kNarrowPeaksBelow = 40;
constexpr int kSincReach = 4;
constexpr float kLeastClarity = 0.25f;
constexpr float kUnvoicedStrength = 0.45f;
/// A shorter period of equal clarity is taken: all its multiples are as clear.
constexpr float kPenaltyPerOctave = 0.02f;
constexpr float kUnknown = -2.0f;  // under every correlation
constexpr int kLagsOfPart = 12;

/// The lags that are looked at, in rising order.
int nextLag(int lag)
{
    return lag + (lag < kEvenLagsFrom ? 1 : 2);
}

int firstLag(int lowLag)
{
    const int lag = lowLag - 1;
    return lag > kEvenLagsFrom ? lag - lag % 2 : lag;
}

}  // namespace

void KestrunePitchCandidates::Allocate(const KestruneFineGeometry& geometry)
{
    mGeometry = geometry;
    mStretch = static_cast<int>(kStretchSeconds * geometry.coarseRate);
    mSquares.assign(static_cast<std::size_t>(geometry.coarseLength) + 1, 0.0);
    mClarity.assign(static_cast<std::size_t>(geometry.longestLag) + 2, kUnknown);
}

void KestrunePitchCandidates::SetRange(float lowHz, float highHz) noexcept
{
    assert(lowHz > 0.0f && highHz > 0.0f);
    const float semitoneUp = std::exp2(1.0f / 12.0f);
    const float threeDown = std::exp2(3.0f / 12.0f);
    const int longest = mGeometry.longestPeriod / mGeometry.factor - 2;
    mLowLag = std::max(2, static_cast<int>(mGeometry.coarseRate / (highHz * semitoneUp)));
    mHighLag =
        std::min(static_cast<int>(std::ceil(mGeometry.coarseRate * threeDown / lowHz)), longest);
    mPartCount = (std::max(0, mHighLag + 2 - firstLag(mLowLag)) + kLagsOfPart - 1) / kLagsOfPart;
}

int KestrunePitchCandidates::CostOf(int part) const noexcept
{
    assert(part >= 0 && part < mPartCount);
    constexpr int kInstructionsOfPart = 900;
    const int first = firstLag(mLowLag) + part * kLagsOfPart;
    const int lags = first < kEvenLagsFrom ? kLagsOfPart : kLagsOfPart / 2;
    const int instructions =
        kInstructionsOfPart + lags * correlationInstructions(std::max(mStretch, first));
    return (instructions + kInstructionsOfUnit / 2) / kInstructionsOfUnit;
}

void KestrunePitchCandidates::Begin(const KestruneHistory& coarse) noexcept
{
    SumSquares(coarse);
    mGate = LevelGate();
    std::fill(mClarity.begin(), mClarity.end(), kUnknown);
    mLeftLag = firstLag(mLowLag);
    mReadings.count = 1;
    mReadings.candidates[0].strength = kUnvoicedStrength;
}

void KestrunePitchCandidates::Correlate(int part) noexcept
{
    assert(part >= 0 && part < mPartCount);
    if (mGate == 0.0f)
        return;
    const int begin = firstLag(mLowLag) + part * kLagsOfPart;
    const int end = std::min(begin + kLagsOfPart, mHighLag + 2);
    int lag = begin;
    if (lag > kEvenLagsFrom)
        lag += lag % 2;
    for (; lag < end; lag = nextLag(lag))
        (void)Clarity(lag);
    ReadPeaksBefore(end);
}

const KestrunePitchReadings& KestrunePitchCandidates::Find() noexcept
{
    if (mGate > 0.0f)
        ReadPeaksBefore(mHighLag + 2);
    return mReadings;
}

void KestrunePitchCandidates::ReadPeaksBefore(int end) noexcept
{
    int lag = nextLag(mLeftLag);
    for (int right = nextLag(lag); right < end; lag = right, right = nextLag(lag)) {
        const float clarity = Clarity(lag);
        if (clarity > kLeastClarity && clarity > Clarity(mLeftLag) && clarity >= Clarity(right))
            Add(Reading(lag));
        mLeftLag = lag;
    }
}

void KestrunePitchCandidates::Add(const KestrunePitchCandidate& candidate) noexcept
{
    if (mReadings.count < KestrunePitchReadings::kMost) {
        mReadings.candidates[static_cast<std::size_t>(mReadings.count++)] = candidate;
        return;
    }
    const auto weakest =
        std::min_element(mReadings.candidates.begin() + 1, mReadings.candidates.end(),
                         [](const auto& a, const auto& b) { return a.strength < b.strength; });
    if (candidate.strength > weakest->strength)
        *weakest = candidate;
}

void KestrunePitchCandidates::SumSquares(const KestruneHistory& coarse) noexcept
{
    assert(coarse.Length() == mGeometry.coarseLength);
    mSamples = coarse.From(coarse.Newest() - mGeometry.coarseLength + 1);
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < mSquares.size(); ++i) {
        const auto sample = static_cast<double>(mSamples[i]);
        sum += sample * sample;
        mSquares[i + 1] = sum;
    }
}

double KestrunePitchCandidates::Energy(int first, int count) const noexcept
{
    assert(first >= 0 && count >= 0 && first + count <= mGeometry.coarseLength);
    return mSquares[static_cast<std::size_t>(first + count)] -
           mSquares[static_cast<std::size_t>(first)];
}

float KestrunePitchCandidates::LevelGate() const noexcept
{
    const int centre = mGeometry.coarseLength - 1 - mGeometry.halfSpan;
    const double mean = Energy(centre - mStretch / 2, mStretch) / mStretch;
    constexpr double kEnergyFloor = 1.0e-10;
    return kestruneLevelGate(static_cast<float>(10.0 * std::log10(mean + kEnergyFloor)));
}

float KestrunePitchCandidates::Clarity(int lag) noexcept
{
    assert(lag >= 1 && lag <= mGeometry.longestLag + 1);
    float& clarity = mClarity[static_cast<std::size_t>(lag)];
    if (clarity != kUnknown)
        return clarity;
    const int count = std::max(mStretch, lag);
    const int a = mGeometry.coarseLength - 1 - mGeometry.halfSpan - (lag + count) / 2;
    const int b = a + lag;
    clarity = static_cast<float>(normalisedCorrelation(
        dotProduct(mSamples + a, mSamples + b, count), Energy(a, count), Energy(b, count)));
    return clarity;
}

double KestrunePitchCandidates::Between(int lag, double offset) noexcept
{
    // Windowed sinc (Hann): the correlation of a signal is limited in band as the signal is.
    double sum = 0.0;
    double weights = 0.0;
    for (int i = -kSincReach; i <= kSincReach; ++i) {
        const double x = std::numbers::pi * (i - offset);
        const double sinc = std::fabs(x) < 1e-6 ? 1.0 : std::sin(x) / x;
        const double weight = sinc * (0.5 + 0.5 * std::cos(x / (kSincReach + 1)));
        sum += weight * static_cast<double>(Clarity(lag + i));
        weights += weight;
    }
    return sum / weights;
}

KestrunePitchCandidate KestrunePitchCandidates::Reading(int lag) noexcept
{
    if (lag >= kEvenLagsFrom) {
        const int around[] = {lag, lag - 1, lag + 1};
        lag = *std::max_element(std::begin(around), std::end(around),
                                [this](int a, int b) { return Clarity(a) < Clarity(b); });
    }
    const ParabolaTop top(static_cast<double>(Clarity(lag - 1)), static_cast<double>(Clarity(lag)),
                          static_cast<double>(Clarity(lag + 1)));
    const float exactLag = static_cast<float>(lag + top.offset);
    double height = top.height;
    if (lag < kNarrowPeaksBelow && lag > kSincReach)
        height = std::clamp(Between(lag, top.offset), height, 1.0);
    KestrunePitchCandidate candidate;
    candidate.period = exactLag * static_cast<float>(mGeometry.factor);
    candidate.octaves = std::log2(candidate.period);
    candidate.strength = static_cast<float>(height) * mGate -
                         kPenaltyPerOctave * std::log2(exactLag / static_cast<float>(mLowLag));
    return candidate;
}

}  // namespace orvane
