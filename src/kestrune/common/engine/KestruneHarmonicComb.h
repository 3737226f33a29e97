// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace orvane
{

/// Weighs, for a grid of candidate pitches 5 cents apart, the spectrum at each candidate's
/// harmonics, and remembers the sums in proportion to how much voice there was, so that in silence
/// and noise the last pitch stays. A relative of D. J. Hermes, "Measurement of pitch by subharmonic
/// summation", J. Acoust. Soc. Am. 83, 1988, on a spectrum whose valleys count negative: those are
/// what tells a pitch from its sub-octave.
class KestruneHarmonicComb
{
public:
    /// Widest range of the engine, 20 .. 1500 Hz, in steps of 5 cents.
    static constexpr int kMaxCandidates = 1495;
    static constexpr int kMaxHarmonics = 112;

    /// All sums 0, memory for the widest range. [setup]
    KestruneHarmonicComb();

    /// Lays the grid from minHz to maxHz, with the harmonics of each candidate up to spectrumTop;
    /// binsPerHz = transform size / rate. The sums stay at their indices. [audio thread]
    void SetRange(float minHz, float maxHz, float spectrumTop, float binsPerHz) noexcept;
    /// Sums the spectrum, as values by bin, into the comb with weight voicing (0 .. 1), and gives
    /// the frequency of the greatest sum, the lowest of equals, in Hz. [audio thread]
    [[nodiscard]] float Find(std::span<const float> spectrum, float voicing) noexcept;
    /// All sums 0. [audio thread]
    void Clear() noexcept;

private:
    /// Neighbouring candidates are summed side by side, in the lanes of a vector register.
    static constexpr int kLanes = 4;
    using Sums = std::array<float, kLanes>;

    [[nodiscard]] Sums WeightedSums(const float* spectrum, int group) const noexcept;

    std::array<float, kMaxHarmonics> mHarmonicWeights;  // 0.8^h
    std::vector<float> mComb;
    std::vector<std::uint8_t> mHarmonicCount;  // by candidate; never rises
    std::vector<std::uint32_t> mFirstBin;      // by group, into mHarmonicBins
    std::vector<std::uint16_t> mHarmonicBins;  // of a group: harmonic by harmonic, its lanes
    float mMinFrequency = 0.0f;
    int mCandidateCount = 0;
};

}  // namespace orvane
