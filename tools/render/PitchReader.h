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

/// Pitch of a sound at one place.
struct PitchReading
{
    std::int64_t frame;  // counted from the first one fed; negative before it
    float hz;
};

/// Finds the pitch of a sound, one reading every 11.6 ms at places that are the same for every
/// sound. A plug-in does not tell its host the pitches that it finds, so that its input and its
/// output are read from outside; the reader is an engine that only listens.
class PitchReader
{
public:
    /// rate in Hz; range: of the voice; pitchReference as the element of that name. Throws
    /// ZException for a rate that no engine takes.
    PitchReader(int rate, KestruneSourceRange range, int pitchReference);

    /// Takes count frames of a sound, from the frame first of block on.
    void Feed(const StereoBlock& block, int first, int count);
    /// What the last call of Feed brought, the oldest first.
    [[nodiscard]] std::span<const PitchReading> Readings() const { return mReadings; }
    /// Frames that must follow a place before its reading has come.
    [[nodiscard]] int Delay() const { return mPitchDelay + mHop; }

private:
    void ReadHop();

    PsolaClass mEngine;
    int mHop;
    int mPitchDelay;        // frames from a hop's start back to where the engine's marks are
    int mFill = 0;          // frames in the current hop, 0 .. mHop - 1
    std::int64_t mFed = 0;  // frames of whole hops given to the engine
    StereoBlock mInput;     // one hop
    StereoBlock mOutput;    // one hop, which nobody hears
    std::vector<PitchReading> mReadings;
};

}  // namespace orvane
