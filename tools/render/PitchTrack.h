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

/// Pitch of input and output at one time of the input.
struct PitchPoint
{
    double seconds;
    float inputHz;
    float outputHz;     // 0 when unknown
    float level;        // RMS around that time, full scale at 1.0
    float periodicity;  // correlation of neighbouring periods, at most 1
    bool isVoiced;
};

/// Collects pitch readings of input and output and decides which of them are voiced: a reader
/// always gives a pitch, and in silence and noise it repeats the last one. A point is voiced when
/// - its level is within 40 dB of the loudest point and above -70 dBFS,
/// - the waveform repeats after the period that was read: two stretches of one period, or of 10 ms
///   if that is longer, have a correlation of at least 0.6,
/// - its pitch is within 80 cents of the point before or after.
class PitchTrack
{
public:
    /// rate in Hz; longestBlock is the most frames of one call of Feed; pitchReference is 0 left,
    /// 1 right or 2 stereo.
    PitchTrack(int rate, int longestBlock, int pitchReference);

    /// Appends the first count frames of block to the input.
    void Feed(const StereoBlock& block, int count);
    /// Adds readings of the input. Their frames were fed and lie at most half a second before the
    /// start of the last block.
    void AddInput(std::span<const PitchReading> readings);
    /// Adds readings of the output, for the same frames in the same order as those of the input and
    /// after them.
    void AddOutput(std::span<const PitchReading> readings);
    /// Decides which points are voiced and drops those outside [0, frames).
    void Finish(std::int64_t frames);

    [[nodiscard]] const std::vector<PitchPoint>& Points() const { return mPoints; }

private:
    struct Window
    {
        double mean;
        double level;
    };

    [[nodiscard]] float DetectorInput(const StereoBlock& block, std::size_t i) const;
    [[nodiscard]] double At(std::int64_t frame) const;
    [[nodiscard]] Window Measure(std::int64_t first, int count) const;
    [[nodiscard]] double Correlation(std::int64_t first, int lag, int count, double mean) const;
    [[nodiscard]] PitchPoint Examine(const PitchReading& reading) const;
    [[nodiscard]] bool IsSteady(std::size_t i) const;

    int mRate;
    int mPitchReference;
    std::vector<float> mRing;  // ring of the newest frames of the channel or mix that is analysed
    std::int64_t mFed = 0;
    std::vector<PitchPoint> mPoints;
    std::size_t mOutputs = 0;  // number of points that have an output pitch
};

/// Distance of the voiced points from the nearest note of the scale, in cents; empty without voiced
/// points.
struct ScaleDistance
{
    std::optional<double> median;
    std::optional<double> percentile95;
};

/// pitch selects the input or the output pitch of the points.
[[nodiscard]] ScaleDistance distanceFromScale(std::span<const PitchPoint> points,
                                              const ScaleGrid& grid, float PitchPoint::*pitch);

}  // namespace orvane
