// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/VstMidi.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orvane
{

namespace
{

// The host may place an event at an odd address, so its fields are copied before they are read.

std::int32_t typeOf(const void* event) noexcept
{
    std::int32_t type = 0;
    static_assert(offsetof(VstEvent, type) == 0);
    std::memcpy(&type, event, sizeof type);
    return type;
}

MidiBytes bytesOf(const void* event) noexcept
{
    VstMidiEvent midi;
    std::memcpy(&midi, event, sizeof midi);
    return {static_cast<std::uint8_t>(midi.midiData[0]),
            static_cast<std::uint8_t>(midi.midiData[1]),
            static_cast<std::uint8_t>(midi.midiData[2])};
}

}  // namespace

std::optional<MidiBytes> midiBytesOf(const VstEvent* event) noexcept
{
    assert(event != nullptr);
    if (typeOf(event) != kVstMidiType)
        return std::nullopt;
    return bytesOf(event);
}

}  // namespace orvane
