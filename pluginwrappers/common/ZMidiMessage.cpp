// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZMidiMessage.h"

#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"

#include <boost/make_shared.hpp>

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orvane
{

namespace
{

constexpr std::int32_t kNoMessage = 0;

struct ChannelMessage
{
    std::uint8_t status;
    std::uint8_t first;
    std::uint8_t second;
};

// The host may place an event at an odd address, so its fields are copied before they are read.

std::int32_t typeOf(const void* event)
{
    std::int32_t type = 0;
    static_assert(offsetof(VstEvent, type) == 0);
    std::memcpy(&type, event, sizeof type);
    return type;
}

ChannelMessage channelMessageOf(const void* event)
{
    VstMidiEvent midi;
    std::memcpy(&midi, event, sizeof midi);
    return {static_cast<std::uint8_t>(midi.midiData[0]),
            static_cast<std::uint8_t>(midi.midiData[1]),
            static_cast<std::uint8_t>(midi.midiData[2])};
}

std::int32_t messageIdOf(const ChannelMessage& midi)
{
    switch (midi.status & 0xf0) {
    case 0x80:
        return ZMIDINOTEOFF;
    case 0x90:  // with a velocity of 0 it ends the note
        return midi.second != 0 ? ZMIDINOTEON : ZMIDINOTEOFF;
    case 0xa0:
        return ZMIDIPOLYPRESSURE;
    case 0xb0:
        return ZMIDICONTROLLER;
    case 0xc0:
        return ZMIDIPROGRAMCHANGE;
    case 0xd0:
        return ZMIDICHANNELPRESSURE;
    case 0xe0:
        return ZMIDIPITCHBEND;
    default:
        return kNoMessage;
    }
}

}  // namespace

boost::shared_ptr<const ZMessage> midiMessageOf(const VstEvent* event)
{
    assert(event != nullptr);
    if (typeOf(event) != kVstMidiType)
        return nullptr;
    const ChannelMessage midi = channelMessageOf(event);
    const std::int32_t id = messageIdOf(midi);
    if (id == kNoMessage)
        return nullptr;
    const bool isBend = id == ZMIDIPITCHBEND;
    const auto message = boost::make_shared<ZMessage>(id);
    message->Add<std::uint8_t>("Channel", midi.status & 0x0f);
    message->Add<std::uint8_t>("Which", midi.first);
    message->Add<std::uint8_t>("Amount", midi.second);
    message->Add<std::uint16_t>(
        "BigAmount", static_cast<std::uint16_t>(isBend ? midi.second << 7 | midi.first : 0));
    return message;
}

}  // namespace orvane
