// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneScales.h"
#include "kestrune/common/engine/PsolaClass.h"
#include "tools/render/SoundFile.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace orvane
{

/// Pitch of a sound at one frame.
struct PitchReading
{
    std::int64_t frame;  // counted from the first one fed; the first readings have negative frames
    float hz;
};

/// Measures the pitch of a sound every 11.6 ms, at frames that depend on the sample rate alone. A
/// plug-in does not publish the pitches that it finds, so the program runs an engine of its own
/// over the input and over the output and uses only the pitch that it detects.
class PitchReader
{
public:
    /// rate in Hz; range is that of the voice; pitchReference is 0 left, 1 right or 2 stereo.
    /// Throws ZException for a rate that the engine does not support.
    PitchReader(int rate, KestruneSourceRange range, int pitchReference);

    /// Feeds the frames [first, first + count) of block.
    void Feed(const StereoBlock& block, int first, int count);
    /// The readings that the last call of Feed produced, oldest first.
    [[nodiscard]] std::span<const PitchReading> Readings() const { return mReadings; }
    /// Frames between two readings, which is the block of the engine.
    [[nodiscard]] int Hop() const { return mHop; }
    /// Frames that must be fed after a frame before its reading is produced.
    [[nodiscard]] int Delay() const { return mPitchDelay + mHop; }

private:
    void ReadHop();

    PsolaClass mEngine;
    int mHop;
    int mPitchDelay;  // frames from the start of a hop back to the frame that its reading is for
    int mFill = 0;    // frames in the current hop, 0 .. mHop - 1
    std::int64_t mFed = 0;  // frames of whole hops given to the engine
    StereoBlock mInput;     // one hop
    StereoBlock mOutput;    // one hop, discarded
    std::vector<PitchReading> mReadings;
};

}  // namespace orvane
