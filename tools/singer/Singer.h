// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/singer/Song.h"

#include <vector>

namespace orvane
{

// A singing voice by source and filter: a band-limited glottal pulse through a cascade of formants.
// Both functions return one channel, full scale at 1.0, and give the same samples on every run.

/// A vowel at a constant pitch in Hz without noise and vibrato: exactly periodic after the first
/// 0.1 s, in which the formants settle. Peak 0.5.
std::vector<float> steadyVowel(Vowel vowel, double pitchHz, double sampleRate, double seconds);

/// A song with glides, vibrato, drift, breath and consonants. Peak 0.65. Pitch and timing do not
/// depend on the sample rate. The song must have a note.
std::vector<float> renderSong(const Song& song, double sampleRate);

}  // namespace orvane
