// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneScales.h"

#include <array>
#include <string>
#include <vector>

namespace orvane
{

class RenderSettings;

/// The notes of the key, scale, intonation and detune in force, on an axis of semitones above C0
/// in equal temperament at A 440, which is at 57.
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

    explicit ScaleGrid(const RenderSettings& settings);

    /// Distance to the nearest note of the scale, in cents, at least 0; hz > 0.
    [[nodiscard]] double CentsOff(double hz) const;
    /// All twelve notes of each octave with low <= position <= high, the lowest first.
    [[nodiscard]] std::vector<Note> Notes(double low, double high) const;
    /// hz > 0.
    [[nodiscard]] static double Position(double hz);

private:
    int mKey;
    double mRoot;                         // a position of the root
    std::array<double, kDegrees> mTones;  // semitones above the root
    std::array<bool, kDegrees> mIsInScale{};
};

}  // namespace orvane
