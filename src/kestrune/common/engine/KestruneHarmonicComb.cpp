// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneHarmonicComb.h"

#include "kestrune/common/engine/KestruneGeometry.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

/// 2^(1/240): 5 cents.
const float kCandidateRatio = static_cast<float>(std::exp2(1.0 / 240.0));
constexpr float kHarmonicDecay = 0.8f;
constexpr std::uint32_t kBinsOfPart = 1024;
constexpr float kBelowEverySum = -1000000.0f;

int harmonicCount(float spectrumTop, float frequency)
{
    return static_cast<int>(std::floor(spectrumTop / frequency));
}

/// Entries of mHarmonicBins for the widest range, in which all lanes of a group have the room of
/// its first. No other range needs more: a higher lower limit means fewer candidates and fewer
/// harmonics at each index, a lower upper limit fewer of both.
std::size_t mostBins(int lanes)
{
    std::size_t bins = 0;
    int lane = 0;
    const float top = kSpectrumTopFactor * kHighestMaxFrequency;
    for (float frequency = kLowestMinFrequency; frequency <= kHighestMaxFrequency;
         frequency *= kCandidateRatio)
    {
        if (lane == 0)
            bins += static_cast<std::size_t>(lanes * harmonicCount(top, frequency));
        lane = (lane + 1) % lanes;
    }
    return bins;
}

}  // namespace

KestruneHarmonicComb::KestruneHarmonicComb()
    : mComb((kMaxCandidates + kLanes - 1) / kLanes * kLanes, 0.0f)
    , mHarmonicCount(mComb.size(), 0)
    , mFirstBin(mComb.size() / kLanes, 0)
    , mHarmonicBins(mostBins(kLanes), 0)
{
    float weight = 1.0f;
    for (float& harmonic : mHarmonicWeights) {
        harmonic = weight;
        weight *= kHarmonicDecay;
    }
}

void KestruneHarmonicComb::SetRange(float minHz, float maxHz, float spectrumTop,
                                    float binsPerHz) noexcept
{
    assert(minHz >= kLowestMinFrequency && maxHz <= kHighestMaxFrequency && binsPerHz > 0.0f);
    mMinFrequency = minHz;
    mCandidateCount = 0;
    std::fill(mHarmonicCount.begin(), mHarmonicCount.end(), std::uint8_t{0});
    std::uint32_t end = 0;
    for (float frequency = minHz; frequency <= maxHz; frequency *= kCandidateRatio) {
        assert(mCandidateCount < kMaxCandidates);
        const auto candidate = static_cast<std::size_t>(mCandidateCount++);
        const int count = harmonicCount(spectrumTop, frequency);
        mHarmonicCount[candidate] = static_cast<std::uint8_t>(count);
        if (candidate % kLanes == 0) {
            mFirstBin[candidate / kLanes] = end;
            end += static_cast<std::uint32_t>(kLanes * count);
        }
        assert(end <= mHarmonicBins.size());
        std::size_t place = mFirstBin[candidate / kLanes] + candidate % kLanes;
        for (int h = 1; h <= count; ++h, place += kLanes) {
            const float position = static_cast<float>(h) * frequency * binsPerHz;
            mHarmonicBins[place] = static_cast<std::uint16_t>(position + 0.5f);
        }
    }
    // One at least, so that a range without candidates finds its lowest frequency.
    mPartCount = 1 + static_cast<int>(end / kBinsOfPart);
}

void KestruneHarmonicComb::FindInPart(int part, std::span<const float> spectrum,
                                      float voicing) noexcept
{
    assert(part >= 0 && part < mPartCount && voicing >= 0.0f && voicing <= 1.0f);
    if (part == 0) {
        mNextGroup = 0;
        mNextFrequency = mMinFrequency;
        mGreatest = kBelowEverySum;
        mFound = mMinFrequency;
    }
    const std::uint32_t end = static_cast<std::uint32_t>(part + 1) * kBinsOfPart;
    const int groups = (mCandidateCount + kLanes - 1) / kLanes;
    while (mNextGroup < groups && mFirstBin[static_cast<std::size_t>(mNextGroup)] < end)
        FindInGroup(mNextGroup++, spectrum.data(), voicing);
    assert(part + 1 < mPartCount || mNextGroup == groups);
}

void KestruneHarmonicComb::FindInGroup(int group, const float* spectrum, float voicing) noexcept
{
    const float kept = 1.0f - voicing;
    // Without a voice the sums stay as they are, whatever the spectrum holds.
    const Sums sums = voicing > 0.0f ? WeightedSums(spectrum, group) : Sums{};
    const int first = group * kLanes;
    float* const comb = mComb.data() + first;
    for (std::size_t lane = 0; lane < kLanes; ++lane)
        comb[lane] = kept * comb[lane] + voicing * sums[lane];
    const int lanes = std::min(kLanes, mCandidateCount - first);
    for (int lane = 0; lane < lanes; ++lane) {
        if (comb[lane] > mGreatest) {
            mGreatest = comb[lane];
            mFound = mNextFrequency;
        }
        mNextFrequency *= kCandidateRatio;
    }
}

KestruneHarmonicComb::Sums KestruneHarmonicComb::WeightedSums(const float* spectrum,
                                                              int group) const noexcept
{
    const std::uint8_t* const counts = mHarmonicCount.data() + group * kLanes;
    const std::uint16_t* bins = mHarmonicBins.data() + mFirstBin[static_cast<std::size_t>(group)];
    const int shared = counts[kLanes - 1];
    Sums sums{};
    int h = 0;
    for (; h < shared; ++h, bins += kLanes) {
        const float weight = mHarmonicWeights[static_cast<std::size_t>(h)];
        const Sums values{spectrum[bins[0]], spectrum[bins[1]], spectrum[bins[2]],
                          spectrum[bins[3]]};
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            sums[lane] += values[lane] * weight;
    }
    // The remaining harmonics, which only the lower candidates of the group have.
    for (; h < counts[0]; ++h, bins += kLanes)
        for (std::size_t lane = 0; lane < kLanes && h < counts[lane]; ++lane)
            sums[lane] += spectrum[bins[lane]] * mHarmonicWeights[static_cast<std::size_t>(h)];
    return sums;
}

void KestruneHarmonicComb::Clear() noexcept
{
    std::fill(mComb.begin(), mComb.end(), 0.0f);
}

}  // namespace orvane
