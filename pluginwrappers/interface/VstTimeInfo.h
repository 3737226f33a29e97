// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// Bits of VstTimeInfo::flags: the state of the transport, and which fields are valid.
enum VstTimeInfoFlags : std::int32_t
{
    kVstTransportChanged = 1 << 0,
    kVstTransportPlaying = 1 << 1,
    kVstNanosValid = 1 << 8,
    kVstPpqPosValid = 1 << 9,
    kVstTempoValid = 1 << 10,
    kVstBarsValid = 1 << 11,
    kVstTimeSigValid = 1 << 13,
    kVstClockValid = 1 << 15,
};

/// The host's position in the song at the first sample of the block. Quarter notes count from 0.
struct VstTimeInfo
{
    double samplePos;
    double sampleRate;   // Hz
    double nanoSeconds;  // of a clock of the host's choice
    double ppqPos;       // quarter notes
    double tempo;        // quarter notes a minute
    double barStartPos;  // quarter notes, as are the cycle's ends
    double cycleStartPos;
    double cycleEndPos;
    std::int32_t timeSigNumerator;
    std::int32_t timeSigDenominator;
    std::int32_t smpteOffset;
    std::int32_t smpteFrameRate;
    std::int32_t samplesToNextClock;  // of 24 a quarter note; the nearest, so it may be negative
    std::int32_t flags;
};

}  // namespace orvane
