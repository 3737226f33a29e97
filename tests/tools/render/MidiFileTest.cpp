// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/MidiFile.h"

#include "support/ExpectZException.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

using Bytes = std::vector<std::uint8_t>;

Bytes operator+(Bytes bytes, const Bytes& more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
    return bytes;
}

Bytes part(const char* id, const Bytes& content)
{
    const auto size = static_cast<std::uint8_t>(content.size());
    return Bytes(id, id + 4) + Bytes{0, 0, 0, size} + content;
}

Bytes head(std::uint8_t format, std::uint8_t tracks, std::uint8_t high, std::uint8_t low)
{
    return part("MThd", {0, format, 0, tracks, high, low});
}

/// One line for each message: seconds, status, data.
std::string listing(const Bytes& file)
{
    std::string text;
    for (const MidiEvent& event : parseMidiFile(file, "f")) {
        char line[64];
        std::snprintf(line, sizeof line, "%.3f %02x %d %d\n", event.seconds, event.bytes[0],
                      event.bytes[1], event.bytes[2]);
        text += line;
    }
    return text;
}

const Bytes kEnd{0, 0xFF, 0x2F, 0};
/// A quarter of 96 ticks takes half a second at first, and a second from tick 96 on.
const Bytes kTempoTrack = part("MTrk", Bytes{96, 0xFF, 0x51, 3, 0x0F, 0x42, 0x40} + kEnd);
const Bytes kTune = part("MTrk", Bytes{0, 0x90, 60, 100,        // on
                                       48, 60, 0,               // running status
                                       0, 0xF0, 2, 0x7E, 0xF7,  // system exclusive, skipped
                                       0x81, 0x10, 0xC3, 7} +
                                     kEnd  // 144 ticks on
);

}  // namespace

TEST(MidiFileTest, MessagesOfAllTracksFollowTheTempo)
{
    EXPECT_EQ(listing(head(1, 2, 0, 96) + kTempoTrack + kTune),
              "0.000 90 60 100\n0.250 90 60 0\n1.500 c3 7 0\n");
    EXPECT_EQ(listing(head(0, 1, 0, 96) + part("XYZW", {1, 2, 3}) + kTune),
              "0.000 90 60 100\n0.250 90 60 0\n1.000 c3 7 0\n");
    // 25 frames a second of 40 ticks.
    EXPECT_EQ(listing(head(0, 1, 0xE7, 40) + kTune),
              "0.000 90 60 100\n0.048 90 60 0\n0.192 c3 7 0\n");
}

TEST(MidiFileTest, BrokenFilesAreRefused)
{
    const auto broken = [](const Bytes& track) { return head(0, 1, 0, 96) + part("MTrk", track); };
    const std::vector<std::pair<Bytes, std::string>> files{
        {{}, "f is no Standard MIDI File"},
        {{'R', 'I', 'F', 'F'}, "f is no Standard MIDI File"},
        {head(2, 1, 0, 96) + kTune,
         "f is a MIDI file of format 2: only 0 and 1 have one time for all tracks; export it as "
         "one of these"},
        {head(0, 1, 0, 0) + kTune, "f is a broken MIDI file: its time has no steps"},
        {head(0, 1, 0xE7, 0) + kTune, "f is a broken MIDI file: its time has no steps"},
        {head(0, 2, 0, 96) + kTune, "f is a broken MIDI file: it ends too early"},
        {broken({0, 0x90, 60}), "f is a broken MIDI file: it ends too early"},
        {broken({0, 60, 0}), "f is a broken MIDI file: a track has data without a status"},
        {broken({0, 0x90, 60, 0x90}), "f is a broken MIDI file: a message is cut off by another"},
        {broken({0, 0xF8}),
         "f is a broken MIDI file: a track holds a message that belongs in no file"},
        {broken({0x80, 0x80, 0x80, 0x80, 0}),
         "f is a broken MIDI file: a number in it is too long"},
        {broken({0, 0xFF, 0x51, 2, 1, 1}),
         "f is a broken MIDI file: a change of tempo has a wrong length"},
        {broken({0, 0xF0, 0xFF, 0xFF, 0xFF, 0x7F}), "f is a broken MIDI file: it ends too early"},
    };
    for (const auto& [file, says] : files)
        expectZException(says, [&file = file] { static_cast<void>(parseMidiFile(file, "f")); });
}

TEST(MidiFileTest, RandomBytesGiveEventsOrAnException)
{
    const Bytes whole = head(1, 2, 0, 96) + kTempoTrack + kTune;
    std::mt19937 random(5);
    for (int round = 0; round < 20000; ++round) {
        Bytes file = whole;
        for (int change = 0; change < 3; ++change)
            file[random() % file.size()] = static_cast<std::uint8_t>(random());
        file.resize(file.size() - random() % 8);
        try {
            for (const MidiEvent& event : parseMidiFile(file, "f"))
                ASSERT_GE(event.seconds, 0.0);
        } catch (const ZException&) {
            continue;
        }
    }
}

}  // namespace orvane
