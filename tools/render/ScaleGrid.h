// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneScales.h"

#include <array>
#include <string>
#include <vector>

namespace orvane
{

class RenderSettings;
struct CurrentScale;

/// The notes of a key, scale, intonation and detune. Positions are semitones above C0 in equal
/// temperament; A 440 Hz is at 57.
class ScaleGrid
{
public:
    struct Note
    {
        double position;  // semitones above C0
        std::string name;
        bool isInScale;
        bool isRoot;
    };

    /// Key, intonation and detune are those of settings.
    ScaleGrid(const RenderSettings& settings, const CurrentScale& scale);

    /// Distance from hz > 0 to the nearest note of the scale, in cents, at least 0.
    [[nodiscard]] double CentsOff(double hz) const;
    /// All notes, in the scale or not, with low <= position <= high, lowest first.
    [[nodiscard]] std::vector<Note> Notes(double low, double high) const;
    /// The position of hz > 0.
    [[nodiscard]] static double Position(double hz);

private:
    int mKey;
    double mRoot;                         // position of the root in some octave
    std::array<double, kDegrees> mTones;  // semitones above the root
    std::array<bool, kDegrees> mIsInScale;
};

}  // namespace orvane
