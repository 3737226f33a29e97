// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/singer/Song.h"

#include <cmath>

namespace orvane
{

namespace
{

constexpr int kConcertKey = 69;
constexpr double kConcertHz = 440.0;
constexpr double kLeadInSeconds = 0.5;
constexpr double kTailSeconds = 0.4;

/// A note of the score; the rest comes before the consonant.
struct Row
{
    double restSeconds;
    Consonant consonant;
    double consonantSeconds;
    Vowel vowel;
    int key;
    double seconds;
    double offKeyCents;
    double glideSeconds;
    double vibratoCents;
    double level;
};

// MIDI keys of C major.
constexpr int kG3 = 55, kC4 = 60, kD4 = 62, kE4 = 64, kF4 = 65, kG4 = 67, kA4 = 69, kB4 = 71;
constexpr int kC5 = 72, kD5 = 74, kE5 = 76;

// Beside the semitones E - F and B - C, a note is off key away from the semitone, or only a little.
constexpr Row kScore[] = {
    {0.00, Consonant::kMurmur, 0.07, Vowel::kA, kG3, 0.50, -35, 0.08, 0, 0.90},
    {0.00, Consonant::kMurmur, 0.06, Vowel::kO, kC4, 0.55, +40, 0.06, 15, 0.95},
    {0.00, Consonant::kNone, 0.00, Vowel::kA, kE4, 0.50, -50, 0.08, 0, 0.90},
    {0.00, Consonant::kMurmur, 0.06, Vowel::kI, kD4, 0.45, +30, 0.06, 0, 0.95},
    {0.00, Consonant::kNone, 0.00, Vowel::kE, kC4, 1.10, -22, 0.07, 18, 0.90},

    {0.35, Consonant::kHiss, 0.08, Vowel::kO, kE4, 0.45, -40, 0.08, 0, 0.85},
    {0.00, Consonant::kMurmur, 0.06, Vowel::kA, kG4, 0.60, +55, 0.06, 15, 0.85},
    {0.00, Consonant::kNone, 0.00, Vowel::kE, kA4, 0.45, -30, 0.06, 0, 0.90},
    {0.00, Consonant::kMurmur, 0.06, Vowel::kU, kG4, 1.10, +45, 0.06, 22, 0.80},

    {0.35, Consonant::kBreath, 0.07, Vowel::kA, kC5, 0.55, +25, 0.08, 15, 0.80},
    {0.00, Consonant::kMurmur, 0.06, Vowel::kA, kE5, 0.95, -60, 0.07, 25, 0.90},
    {0.00, Consonant::kNone, 0.00, Vowel::kO, kD5, 0.45, +35, 0.06, 0, 0.75},
    {0.00, Consonant::kMurmur, 0.06, Vowel::kI, kB4, 0.45, -45, 0.07, 0, 0.90},
    {0.00, Consonant::kMurmur, 0.06, Vowel::kA, kC5, 1.20, +28, 0.06, 25, 0.85},

    {0.35, Consonant::kStop, 0.07, Vowel::kE, kA4, 0.45, -55, 0.08, 0, 0.85},
    {0.00, Consonant::kMurmur, 0.06, Vowel::kO, kF4, 0.55, +50, 0.07, 15, 0.90},
    {0.00, Consonant::kNone, 0.00, Vowel::kA, kD4, 0.50, -25, 0.08, 0, 0.85},
    {0.00, Consonant::kMurmur, 0.06, Vowel::kA, kC4, 1.40, +60, 0.06, 22, 0.90},
};

}  // namespace

double SungNote::intendedHz() const
{
    return kConcertHz * std::exp2((key - kConcertKey) / 12.0);
}

double SungNote::sungHz() const
{
    return intendedHz() * std::exp2(offKeyCents / 1200.0);
}

Song demoSong()
{
    Song song{};
    double end = kLeadInSeconds;
    for (const Row& row : kScore) {
        const double onset = end + row.restSeconds + row.consonantSeconds;
        const bool startsPhrase = song.notes.empty() || row.restSeconds > 0.0;
        song.notes.push_back({onset, row.seconds, row.key, row.offKeyCents, row.vowel,
                              row.consonant, row.consonantSeconds, row.glideSeconds,
                              row.vibratoCents, row.level, startsPhrase});
        end = onset + row.seconds;
    }
    song.seconds = end + kTailSeconds;
    return song;
}

}  // namespace orvane
