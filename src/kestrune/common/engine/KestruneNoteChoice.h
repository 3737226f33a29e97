// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneCorrection.h"

#include <array>
#include <optional>
#include <span>

namespace orvane
{

/// The note that a voice is meant to be on, chosen with look-ahead and with a preference for the
/// note that is held: by dynamic programming over the notes, a change of note costs as much as
/// being two semitones off during one record. So a vibrato stays on its note, and a real change of
/// note is followed from its first record on. Pitches and notes are in semitones above 1 Hz.
class KestruneNoteChoice
{
public:
    /// The decision on one record.
    struct Note
    {
        double semitones;     // above 1 Hz
        bool isLeft = false;  // the note is one of those that are not corrected
    };

    /// Records that the decision looks at: the record itself and those after it.
    static constexpr int kMostPitches = 15;

    /// Frequency of the scale's root in any octave, in Hz; 0 and below mean 440. Forgets the held
    /// note. [audio thread]
    void SetReferenceFrequency(float hz) noexcept;
    /// Tones of the scale in semitones above the root, which is a note in any case. Forgets the
    /// held note. [audio thread]
    void SetTones(const float* tones, int count) noexcept;
    /// Twelve flags by semitone above the root; a note whose flag is 1 is left as it is sung. Null
    /// leaves none. The buffer is not owned. [audio thread]
    void SetIgnoredNotes(ZBuffer* buffer) noexcept { mIgnoredNotes = buffer; }
    /// Forgets the held note. [audio thread]
    void Release() noexcept;

    /// Chooses and holds the note of the first pitch; the others are those of the records after it
    /// as long as they are voiced. [audio thread]
    [[nodiscard]] Note Choose(std::span<const double> pitches) noexcept;

private:
    using Tones = std::array<double, KestruneCorrection::kMaxTones + 1>;

    /// Chooses among tones in every octave; held is the note of the record before, in semitones
    /// above the root, and becomes that of this one.
    static void ChooseAmong(std::span<const double> tones, std::span<const double> pitches,
                            std::optional<double>& held) noexcept;
    [[nodiscard]] unsigned IgnoredDegrees() const noexcept;

    double mReference = 12.0 * 8.78135971352466;       // semitones of 440 Hz above 1 Hz
    Tones mTones{0.0, 2.0, 4.0, 5.0, 7.0, 9.0, 11.0};  // the root first
    int mToneCount = 7;
    ZBuffer* mIgnoredNotes = nullptr;
    std::optional<double> mHeldNote;    // semitones above the root in the reference's octave
    std::optional<double> mHeldDegree;  // the same on the chromatic scale
};

}  // namespace orvane
