// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/ZMidiMessage.h"

#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"

#include <boost/make_shared.hpp>

namespace orvane
{

namespace
{

constexpr std::int32_t kNoMessage = 0;

std::int32_t messageIdOf(const MidiBytes& midi)
{
    switch (midi[0] & 0xf0) {
    case 0x80:
        return ZMIDINOTEOFF;
    case 0x90:  // with a velocity of 0 it ends the note
        return midi[2] != 0 ? ZMIDINOTEON : ZMIDINOTEOFF;
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

boost::shared_ptr<const ZMessage> midiMessageOf(const MidiBytes& midi)
{
    const std::int32_t id = messageIdOf(midi);
    if (id == kNoMessage)
        return nullptr;
    const bool isBend = id == ZMIDIPITCHBEND;
    const auto message = boost::make_shared<ZMessage>(id);
    message->Add<std::uint8_t>("Channel", midi[0] & 0x0f);
    message->Add<std::uint8_t>("Which", midi[1]);
    message->Add<std::uint8_t>("Amount", midi[2]);
    message->Add<std::uint16_t>("BigAmount",
                                static_cast<std::uint16_t>(isBend ? midi[2] << 7 | midi[1] : 0));
    return message;
}

}  // namespace orvane
