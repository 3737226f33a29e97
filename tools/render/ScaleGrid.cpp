// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/ScaleGrid.h"

#include "tools/render/RenderSettings.h"
#include "tools/render/StateText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr double kConcertPitch = 440.0;    // Hz
constexpr double kConcertPosition = 57.0;  // semitones above C0
constexpr double kCentsPerSemitone = 100.0;

}  // namespace

ScaleGrid::ScaleGrid(const RenderSettings& settings, const CurrentScale& scale)
    : mKey(settings.Index(Setting::kKey))
    , mRoot(
          Position(static_cast<double>(referenceFrequency(mKey, settings.Value(Setting::kDetune)))))
    , mIsInScale(scale.degrees)
{
    const auto cents = intonationCents(settings.Index(Setting::kIntonation));
    for (std::size_t d = 0; d < mTones.size(); ++d)
        mTones[d] = static_cast<double>(d) + cents[d] / kCentsPerSemitone;
}

double ScaleGrid::Position(double hz)
{
    assert(hz > 0.0);
    return kConcertPosition + kDegrees * std::log2(hz / kConcertPitch);
}

double ScaleGrid::CentsOff(double hz) const
{
    const double above = Position(hz) - mRoot;
    const double semitones = above - kDegrees * std::floor(above / kDegrees);
    double nearest = kDegrees - semitones;  // to the root above
    for (std::size_t d = 0; d < mTones.size(); ++d) {
        if (mIsInScale[d])
            nearest = std::min(nearest, std::fabs(semitones - mTones[d]));
    }
    return nearest * kCentsPerSemitone;
}

std::vector<ScaleGrid::Note> ScaleGrid::Notes(double low, double high) const
{
    assert(low <= high);
    std::vector<Note> notes;
    const int firstOctave = static_cast<int>(std::floor((low - mRoot) / kDegrees)) - 1;
    const int lastOctave = static_cast<int>(std::ceil((high - mRoot) / kDegrees)) + 1;
    for (int octave = firstOctave; octave <= lastOctave; ++octave) {
        for (int d = 0; d < kDegrees; ++d) {
            const auto degree = static_cast<std::size_t>(d);
            const double position = mRoot + octave * kDegrees + mTones[degree];
            if (position < low || position > high)
                continue;
            // An intonation moves a degree but does not change its name.
            const int number = static_cast<int>(kConcertPosition) + mKey + octave * kDegrees + d;
            const auto key = static_cast<std::size_t>((mKey + d) % kDegrees);
            const double pitchOctave = std::floor(number / static_cast<double>(kDegrees));
            notes.push_back({position, fmt::format("{}{:.0f}", kKeyNames[key], pitchOctave),
                             mIsInScale[degree], d == 0});
        }
    }
    return notes;
}

}  // namespace orvane
