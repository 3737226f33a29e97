// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace orvane
{

enum class Vowel
{
    kA,
    kE,
    kI,
    kO,
    kU
};

/// What comes before a note's vowel.
enum class Consonant
{
    kNone,    ///< tied to the note before
    kMurmur,  ///< voiced, as in "na": the voice goes on behind closed lips or tongue
    kBreath,  ///< noise through the vowel, as in "ha"
    kHiss,    ///< as in "sa"
    kStop     ///< silence and a short burst, as in "ta"
};

/// A note as it stands in the score and as it is sung.
struct SungNote
{
    double onsetSeconds;  ///< start of the vowel; glides are centred on it
    double seconds;       ///< of the vowel: the next consonant begins after it
    int key;              ///< intended semitone, A4 = 440 Hz being 69
    double offKeyCents;   ///< sung minus intended
    Vowel vowel;
    Consonant consonant;
    double consonantSeconds;  ///< before the onset
    double glideSeconds;      ///< in which the pitch comes over from the note before
    double vibratoCents;      ///< amplitude, half the whole width
    double level;             ///< 0 .. 1
    bool startsPhrase;        ///< after a rest, with a breath taken in it

    [[nodiscard]] double endSeconds() const { return onsetSeconds + seconds; }
    /// The frequency in the score, in Hz, and that which is sung once glides are over.
    [[nodiscard]] double intendedHz() const;
    [[nodiscard]] double sungHz() const;
};

/// Notes in order of time, apart or touching, and the length of the whole.
struct Song
{
    std::vector<SungNote> notes;
    double seconds;
};

/// A tune in C major between G3 and E5, every note of it off key by 20 to 60 cents and nearer to
/// its own than to any other tone of that scale, vibrato included.
Song demoSong();

}  // namespace orvane
