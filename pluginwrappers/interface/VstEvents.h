// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// Value of VstEvent::type for a VstMidiEvent. Events of other types have other fields after the
/// first four.
constexpr std::int32_t kVstMidiType = 1;

/// An event of any type: the first four fields are common to all types.
struct VstEvent
{
    std::int32_t type;
    std::int32_t byteSize;     // without type and byteSize
    std::int32_t deltaFrames;  // from the start of the next block
    std::int32_t flags;
    char data[16];
};

/// A MIDI message of the host.
struct VstMidiEvent
{
    std::int32_t type;
    std::int32_t byteSize;
    std::int32_t deltaFrames;
    std::int32_t flags;
    std::int32_t noteLength;  // in sample frames, 0 where unknown
    std::int32_t noteOffset;
    char midiData[4];  // up to three bytes of MIDI, the rest 0
    char detune;       // cents, -64 to 63
    char noteOffVelocity;
    char reserved1;
    char reserved2;
};

/// The events of a block, in order. The array has numEvents entries, whatever its declared length.
struct VstEvents
{
    std::int32_t numEvents;
    std::intptr_t reserved;
    VstEvent* events[2];
};

}  // namespace orvane
