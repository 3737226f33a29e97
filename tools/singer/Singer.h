// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/singer/Song.h"

#include <vector>

namespace orvane
{

/// A singing voice made by source and filter: a band-limited glottal pulse through a cascade of
/// formants. Both functions give one channel at full scale 1.0, the same on every run.

/// A vowel at a pitch in Hz that never moves: no noise, no vibrato, so exactly periodic once the
/// formants have settled, within 0.1 s. Peak 0.5.
std::vector<float> steadyVowel(Vowel vowel, double pitchHz, double sampleRate, double seconds);

/// The whole song with all that makes it sound sung: glides, vibrato, drift, breath, consonants.
/// Peak 0.65. Pitch and timing do not depend on the sample rate. There must be a note.
std::vector<float> renderSong(const Song& song, double sampleRate);

}  // namespace orvane
