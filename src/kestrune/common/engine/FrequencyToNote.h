// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Note nearest to a frequency, in Hz and above 0, in equal temperament with C0 at 16.35 Hz.
/// noteNumber counts semitones from C0, noteInOctave from the C below (0 .. 11). Any of the three
/// results may be null. [any thread]
void FrequencyToNote(float frequency, int* noteNumber, int* octave, int* noteInOctave) noexcept;

}  // namespace orvane
