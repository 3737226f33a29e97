#include "pluginwrappers/common/ZMidiMessage.h"

#include "zlib/common/ZMessage.h"
#include "zlib/common/ZMessageIds.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace orvane
{

namespace
{

VstEvent midiEvent(int status, int first, int second)
{
    VstMidiEvent midi{};
    midi.type = kVstMidiType;
    midi.midiData[0] = static_cast<char>(status);
    midi.midiData[1] = static_cast<char>(first);
    midi.midiData[2] = static_cast<char>(second);
    VstEvent event;
    std::memcpy(&event, &midi, sizeof event);
    return event;
}

template <typename T>
T fieldOf(const ZMessage& message, const char* name)
{
    T value{};
    EXPECT_TRUE(message.Find(name, value)) << name;
    return value;
}

void expectMessage(const VstEvent& event, std::int32_t id, int channel, int which, int amount,
                   int bigAmount)
{
    const auto message = midiMessageOf(event);
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->GetId(), id);
    EXPECT_EQ(fieldOf<std::uint8_t>(*message, "Channel"), channel);
    EXPECT_EQ(fieldOf<std::uint8_t>(*message, "Which"), which);
    EXPECT_EQ(fieldOf<std::uint8_t>(*message, "Amount"), amount);
    EXPECT_EQ(fieldOf<std::uint16_t>(*message, "BigAmount"), bigAmount);
}

}  // namespace

TEST(ZMidiMessageTest, ChannelMessagesCarryTheirBytes)
{
    expectMessage(midiEvent(0x83, 60, 64), ZMIDINOTEOFF, 3, 60, 64, 0);
    expectMessage(midiEvent(0x9f, 60, 64), ZMIDINOTEON, 15, 60, 64, 0);
    expectMessage(midiEvent(0x90, 60, 0), ZMIDINOTEOFF, 0, 60, 0, 0);
    expectMessage(midiEvent(0xa1, 61, 7), ZMIDIPOLYPRESSURE, 1, 61, 7, 0);
    expectMessage(midiEvent(0xb2, 1, 127), ZMIDICONTROLLER, 2, 1, 127, 0);
    expectMessage(midiEvent(0xc0, 5, 0), ZMIDIPROGRAMCHANGE, 0, 5, 0, 0);
    expectMessage(midiEvent(0xd0, 99, 0), ZMIDICHANNELPRESSURE, 0, 99, 0, 0);
    expectMessage(midiEvent(0xe0, 0x01, 0x40), ZMIDIPITCHBEND, 0, 1, 0x40, 0x2001);
    expectMessage(midiEvent(0xe0, 0x7f, 0x7f), ZMIDIPITCHBEND, 0, 0x7f, 0x7f, 0x3fff);
}

TEST(ZMidiMessageTest, OtherEventsMakeNone)
{
    for (const int status : {0x00, 0x7f, 0xf0, 0xf8, 0xff})
        EXPECT_EQ(midiMessageOf(midiEvent(status, 1, 2)), nullptr) << status;
    VstEvent systemExclusive = midiEvent(0x90, 60, 64);
    systemExclusive.type = 6;
    EXPECT_EQ(midiMessageOf(systemExclusive), nullptr);
}

}  // namespace orvane
