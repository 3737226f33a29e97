// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/PitchReader.h"
#include "tools/render/SoundFile.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orvane
{

class ScaleGrid;

/// Pitch at one place of the input.
struct PitchPoint
{
    double seconds;
    float inputHz;
    float outputHz;     // 0 where it is not known
    float level;        // root mean square around the place, full scale at 1.0
    float periodicity;  // how alike neighbouring periods of that pitch are, up to 1
    bool isVoiced;
};

/// Follows the pitch of a voice and decides where there is one, for a reader gives a pitch
/// everywhere and simply keeps the last in silence and noise. A place counts as voiced where
/// - the level is within 40 dB of the loudest place and above -70 dB of full scale,
/// - the waveform repeats after the period found: two stretches of a period, or of 10 ms where
///   that is longer, have a correlation of 0.6 and more,
/// - the pitch is steady: within 80 cents of that of the place before or after.
class PitchTrack
{
public:
    /// rate in Hz; longestBlock: most frames that one call of Feed brings; pitchReference as the
    /// element of that name.
    PitchTrack(int rate, int longestBlock, int pitchReference);

    /// Takes the first count frames of block, which are the next of the input.
    void Feed(const StereoBlock& block, int count);
    /// Takes what was found out about frames fed up to now, at most half a second back from the
    /// start of the last block.
    void AddInput(std::span<const PitchReading> readings);
    /// Takes what was found out about the output, at the same places in the same order, at any
    /// later time.
    void AddOutput(std::span<const PitchReading> readings);
    /// Decides what is voiced. Places outside [0, frames) are dropped.
    void Finish(std::int64_t frames);

    [[nodiscard]] const std::vector<PitchPoint>& Points() const { return mPoints; }

private:
    struct Window
    {
        double mean;
        double level;
    };

    [[nodiscard]] float Heard(const StereoBlock& block, std::size_t i) const;
    [[nodiscard]] double At(std::int64_t frame) const;
    [[nodiscard]] Window Measure(std::int64_t first, int count) const;
    [[nodiscard]] double Correlation(std::int64_t first, int lag, int count, double mean) const;
    [[nodiscard]] PitchPoint Examine(const PitchReading& reading) const;
    [[nodiscard]] bool IsSteady(std::size_t i) const;

    int mRate;
    int mPitchReference;
    std::vector<float> mHeard;  // a circle of the newest frames, as the detector hears them
    std::int64_t mFed = 0;
    std::vector<PitchPoint> mPoints;
    std::size_t mOutputs = 0;  // points with an output
};

/// How far voiced places are from the scale, in cents; empty where none is voiced.
struct ScaleDistance
{
    std::optional<double> median;
    std::optional<double> percentile95;
};

/// pitch: which of a point's two.
[[nodiscard]] ScaleDistance distanceFromScale(std::span<const PitchPoint> points,
                                              const ScaleGrid& grid, float PitchPoint::*pitch);

}  // namespace orvane
