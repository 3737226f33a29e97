#include "kestrune/common/KestruneHarmonicComb.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

/// 2^(1/240): the grid's step of 5 cents.
const float kCandidateRatio = static_cast<float>(std::exp2(1.0 / 240.0));
constexpr float kHarmonicDecay = 0.8f;

int harmonicCount(float spectrumTop, float frequency)
{
    return static_cast<int>(std::floor(spectrumTop / frequency));
}

/// Bins that the widest range takes, which is more than any other does: a higher low limit has
/// fewer candidates and fewer harmonics at each index, a lower high limit fewer of both.
std::size_t mostBins()
{
    std::size_t bins = 0;
    for (float frequency = 20.0f; frequency <= 1500.0f; frequency *= kCandidateRatio)
        bins += static_cast<std::size_t>(harmonicCount(1.5f * 1500.0f, frequency));
    return bins;
}

}  // namespace

KestruneHarmonicComb::KestruneHarmonicComb()
    : mComb(kMaxCandidates, 0.0f)
    , mFirstBin(kMaxCandidates + 1, 0)
    , mHarmonicBins(mostBins(), 0)
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
    mMinFrequency = minHz;
    mCandidateCount = 0;
    std::uint32_t bin = 0;
    for (float frequency = minHz; frequency <= maxHz; frequency *= kCandidateRatio) {
        const int count = harmonicCount(spectrumTop, frequency);
        assert(mCandidateCount < kMaxCandidates && bin + count <= mHarmonicBins.size());
        for (int h = 1; h <= count; ++h) {
            const float position = static_cast<float>(h) * frequency * binsPerHz;
            mHarmonicBins[bin++] = static_cast<std::uint16_t>(position + 0.5f);
        }
        mFirstBin[static_cast<std::size_t>(++mCandidateCount)] = bin;
    }
}

float KestruneHarmonicComb::Find(std::span<const float> spectrum, float voicing) noexcept
{
    const float kept = 1.0f - voicing;
    float best = -1000000.0f;
    float found = mMinFrequency;
    float frequency = mMinFrequency;
    for (int candidate = 0; candidate < mCandidateCount; ++candidate) {
        float& comb = mComb[static_cast<std::size_t>(candidate)];
        comb = kept * comb + voicing * WeightedSum(spectrum.data(), candidate);
        if (comb > best) {
            best = comb;
            found = frequency;
        }
        frequency *= kCandidateRatio;
    }
    return found;
}

float KestruneHarmonicComb::WeightedSum(const float* spectrum, int candidate) const noexcept
{
    const std::span<const std::uint16_t> bins = HarmonicBins(candidate);
    const std::size_t count = bins.size();
    float sum = 0.0f;
    std::size_t h = 0;
    // Four to a round: the loop's own work would cost as much as the sum.
    for (; h + 4 <= count; h += 4) {
        sum += spectrum[bins[h]] * mHarmonicWeights[h];
        sum += spectrum[bins[h + 1]] * mHarmonicWeights[h + 1];
        sum += spectrum[bins[h + 2]] * mHarmonicWeights[h + 2];
        sum += spectrum[bins[h + 3]] * mHarmonicWeights[h + 3];
    }
    for (; h < count; ++h)
        sum += spectrum[bins[h]] * mHarmonicWeights[h];
    return sum;
}

void KestruneHarmonicComb::Clear() noexcept { std::fill(mComb.begin(), mComb.end(), 0.0f); }

std::span<const std::uint16_t> KestruneHarmonicComb::HarmonicBins(int candidate) const noexcept
{
    const std::uint32_t first = mFirstBin[static_cast<std::size_t>(candidate)];
    const std::uint32_t end = mFirstBin[static_cast<std::size_t>(candidate) + 1];
    return {mHarmonicBins.data() + first, end - first};
}

}  // namespace orvane
