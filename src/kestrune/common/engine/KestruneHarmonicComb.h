// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace orvane
{

/// Pitch detection by harmonic summation: for candidate pitches 5 cents apart it sums the spectrum
/// at the candidate's harmonics, with weights that fall by 0.8 a harmonic. The sums are smoothed
/// over blocks in proportion to the voicing, so that in silence and noise the last pitch stays.
///
/// Related to D. J. Hermes, "Measurement of pitch by subharmonic summation", J. Acoust. Soc. Am.
/// 83, 1988. Here the spectrum is normalised so that valleys are negative; they lower the sum of a
/// sub-octave, whose odd harmonics fall into them.
class KestruneHarmonicComb
{
public:
    /// Candidates of the widest range, 20 .. 1500 Hz.
    static constexpr int kMaxCandidates = 1495;
    /// Harmonics of the lowest candidate up to the top of the widest band.
    static constexpr int kMaxHarmonics = 112;

    /// Allocates memory for the widest range; all sums are 0. [setup]
    KestruneHarmonicComb();

    /// Sets the candidates from minHz to maxHz, each with its harmonics up to spectrumTop (Hz);
    /// binsPerHz = transform size / sample rate. Sums keep their indices, whatever pitch these mean
    /// now. [audio thread]
    void SetRange(float minHz, float maxHz, float spectrumTop, float binsPerHz) noexcept;
    /// Number of parts that the candidates are divided into, which cost about the same.
    /// [audio thread]
    [[nodiscard]] int PartCount() const noexcept { return mPartCount; }
    /// Adds a spectrum, as values by bin, to the smoothed sums of a part's candidates with weight
    /// voicing (0 .. 1). All parts follow one another in rising order, with the same spectrum.
    /// [audio thread]
    void FindInPart(int part, std::span<const float> spectrum, float voicing) noexcept;
    /// After the last part: the candidate with the greatest sum, in Hz; the lowest one of equals.
    /// [audio thread]
    [[nodiscard]] float Found() const noexcept { return mFound; }
    /// Sets all sums to 0. [audio thread]
    void Clear() noexcept;

private:
    /// Candidates of a group, which are neighbours, are summed in the lanes of a vector register.
    /// Their bins are loaded one by one: the processors' gather instruction takes twice the time.
    static constexpr int kLanes = 4;
    using Sums = std::array<float, kLanes>;

    void FindInGroup(int group, const float* spectrum, float voicing) noexcept;
    [[nodiscard]] Sums WeightedSums(const float* spectrum, int group) const noexcept;

    std::array<float, kMaxHarmonics> mHarmonicWeights;  // 0.8^h, h from 0
    std::vector<float> mComb;                           // smoothed sums by candidate
    std::vector<std::uint8_t> mHarmonicCount;           // by candidate, never rising
    std::vector<std::uint32_t> mFirstBin;               // by group: its start in mHarmonicBins
    std::vector<std::uint16_t> mHarmonicBins;           // by group, harmonic and lane
    float mMinFrequency = 0.0f;
    int mCandidateCount = 0;
    int mPartCount = 0;

    // Of the spectrum that is being added.
    int mNextGroup = 0;
    float mNextFrequency = 0.0f;  // of the group's first candidate, Hz
    float mGreatest = 0.0f;
    float mFound = 0.0f;  // Hz
};

}  // namespace orvane
