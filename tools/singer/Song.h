// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace orvane
{

/// The vowels that the singer can form.
enum class Vowel
{
    kA,
    kE,
    kI,
    kO,
    kU
};

/// The sound before a note's vowel.
enum class Consonant
{
    kNone,    // tied to the note before
    kMurmur,  // voiced behind closed lips or tongue, as in "na"
    kBreath,  // noise through the vowel, as in "ha"
    kHiss,    // as in "sa"
    kStop     // silence and a short burst, as in "ta"
};

/// A note: its pitch in the score and how it is sung.
struct SungNote
{
    double onsetSeconds;  // start of the vowel; glides are centred on it
    double seconds;       // length of the vowel; the next consonant starts after it
    int key;              // intended MIDI key; A4 = 440 Hz is 69
    double offKeyCents;   // sung minus intended
    Vowel vowel;
    Consonant consonant;
    double consonantSeconds;  // before the onset
    double glideSeconds;      // length of the glide from the note before
    double vibratoCents;      // amplitude, half of the whole width
    double level;             // 0 .. 1
    bool startsPhrase;        // after a rest, with a breath taken in it

    [[nodiscard]] double endSeconds() const { return onsetSeconds + seconds; }
    /// The frequency in the score and the one sung after the glide, in Hz.
    [[nodiscard]] double intendedHz() const;
    [[nodiscard]] double sungHz() const;
};

/// Notes in order of time that do not overlap, and the length of the song.
struct Song
{
    std::vector<SungNote> notes;
    double seconds;
};

/// A tune in C major between G3 and E5. Every note is off key by 20 to 60 cents, yet nearest to its
/// own tone of the scale, vibrato included.
Song demoSong();

}  // namespace orvane
