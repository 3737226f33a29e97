// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Finds the note nearest to a frequency (in Hz, above 0) in equal temperament with C0 at 16.35 Hz.
/// noteNumber counts semitones from C0, noteInOctave semitones from the C below (0 .. 11). Each of
/// the three result pointers may be null. [any thread]
void FrequencyToNote(float frequency, int* noteNumber, int* octave, int* noteInOctave) noexcept;

}  // namespace orvane
