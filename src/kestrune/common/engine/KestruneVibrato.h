// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace orvane
{

/// Finds the middle of a wide vibrato: of pitches that swing evenly, as a sine of 4 to 8 Hz does,
/// by more than half a semitone to either side. A trill rests on its two notes, and a step ends on
/// one: neither has a middle. A trill that is sung as evenly as a vibrato counts as one. Sines are
/// fitted by least squares, some rates in each part.
class KestruneVibrato
{
public:
    static constexpr int kParts = 3;

    /// pitches: one a record, in semitones, with so many records a second; they must stay until the
    /// last part is done. The vibrato may have begun with any of the first mayBegin + 1 of them and
    /// lasts up to the last. [audio thread]
    void Begin(std::span<const double> pitches, int mayBegin, double recordsPerSecond) noexcept;
    /// [audio thread]
    void FitPart(int part) noexcept;
    /// The middle in semitones once all parts are done, or nothing. [audio thread]
    [[nodiscard]] std::optional<double> Middle() const noexcept { return mMiddle; }

private:
    void Fit(double hz) noexcept;

    std::span<const double> mPitches;  // empty while they swing too little
    std::size_t mMayBegin = 0;
    double mRate = 0.0;   // records a second
    double mLeast = 0.0;  // share of the power that the best sine leaves
    std::optional<double> mMiddle;
};

}  // namespace orvane
