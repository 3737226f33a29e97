// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/FrequencyToNote.h"

#include <cassert>
#include <cmath>

namespace orvane
{

void FrequencyToNote(float frequency, int* noteNumber, int* octave, int* noteInOctave) noexcept
{
    assert(frequency > 0.0f);
    const float octaves = std::log10(frequency / 16.35f) / std::log10(2.0f);
    int octaveFound = static_cast<int>(std::floor(octaves));
    const int number = static_cast<int>(std::floor(12.0f * octaves + 0.5f));
    int degree = number - 12 * octaveFound;
    // The note nearest to a frequency just below a C is that C, which begins the next octave.
    if (degree == 12) {
        degree = 0;
        ++octaveFound;
    }
    if (noteNumber)
        *noteNumber = number;
    if (octave)
        *octave = octaveFound;
    if (noteInOctave)
        *noteInOctave = degree;
}

}  // namespace orvane
