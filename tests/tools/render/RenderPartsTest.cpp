// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ExpectZException.h"
#include "support/Signals.h"
#include "tools/render/AutomationFile.h"
#include "tools/render/MidiFile.h"
#include "tools/render/PitchReader.h"
#include "tools/render/PitchTrack.h"
#include "tools/render/RenderProgram.h"
#include "tools/render/ScaleGrid.h"
#include "tools/render/StateText.h"

#include <cstdio>

namespace orvane
{

namespace
{

constexpr int kRate = 44100;

double hzAt(double semitonesFromConcertPitch)
{
    return 440.0 * std::exp2(semitonesFromConcertPitch / 12.0);
}

ScaleGrid gridWith(std::initializer_list<std::pair<Setting, float>> values)
{
    RenderSettings settings;
    for (const auto& [setting, value] : values)
        settings.Set(setting, value);
    return {settings, builtInScale(settings.Index(Setting::kScale))};
}

/// All readings of a sound that is fed in pieces of piece frames.
std::vector<PitchReading> readingsOf(const std::vector<float>& sound, int piece)
{
    PitchReader reader(kRate, sourceRange(0), 2);
    std::vector<PitchReading> readings;
    const int frames = static_cast<int>(sound.size());
    for (int first = 0; first < frames; first += piece) {
        reader.Feed({sound, sound}, first, std::min(piece, frames - first));
        readings.insert(readings.end(), reader.Readings().begin(), reader.Readings().end());
    }
    return readings;
}

/// Share of voiced points when every reading of a sound is hz, or alternates around it by
/// wobbleCents.
double voicedShare(const std::vector<float>& sound, float hz, float wobbleCents = 0.0f)
{
    PitchTrack track(kRate, static_cast<int>(sound.size()), 2);
    track.Feed({sound, sound}, static_cast<int>(sound.size()));
    std::vector<PitchReading> readings;
    for (std::int64_t frame = 2000; frame < std::ssize(sound) - 2000; frame += 512)
        readings.push_back(
            {frame, hz * std::exp2((frame % 1024 < 512 ? 0.5f : -0.5f) * wobbleCents / 1200.0f)});
    track.AddInput(readings);
    track.Finish(std::ssize(sound));
    const auto voiced = std::ranges::count_if(track.Points(), &PitchPoint::isVoiced);
    return static_cast<double>(voiced) / static_cast<double>(track.Points().size());
}

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

TEST(PitchReaderTest, ReadingsAreForTheFramesWhereThePitchWasSungForAllBlockSizes)
{
    std::vector<float> voice = testVoice(1, 1.0).samples;
    const TestSound upper = testVoice(2, 1.0);
    for (std::size_t i = 1; i < upper.samples.size(); i += 2)
        voice.push_back(upper.samples[i]);
    const auto step = static_cast<std::int64_t>(voice.size() / 2);
    const std::vector<PitchReading> whole = readingsOf(voice, kRate);
    const std::vector<PitchReading> pieces = readingsOf(voice, 77);
    ASSERT_EQ(whole.size(), pieces.size());
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_EQ(whole[i].frame, pieces[i].frame);
        EXPECT_EQ(whole[i].hz, pieces[i].hz);
        const std::int64_t early = step - whole[i].frame;
        if (whole[i].frame > kRate / 10 && early > kRate / 33) {
            EXPECT_NEAR(whole[i].hz, 223.845f, 1.0f) << whole[i].frame;
        }
        if (early < -kRate / 33) {
            EXPECT_GT(whole[i].hz, 320.0f) << whole[i].frame;
        }
    }
}

TEST(PitchTrackTest, OutputReadingsJoinTheInputReadingsInOrder)
{
    PitchTrack track(kRate, 100, 2);
    track.AddInput(std::vector<PitchReading>{{-400, 100.0f}, {112, 200.0f}});
    track.AddOutput(std::vector<PitchReading>{{-400, 110.0f}});
    track.AddInput(std::vector<PitchReading>{{624, 300.0f}, {1136, 400.0f}, {90000, 500.0f}});
    track.AddOutput(std::vector<PitchReading>{{112, 210.0f}, {624, 310.0f}});
    track.Finish(kRate);
    std::vector<float> pitches;
    for (const PitchPoint& point : track.Points())
        pitches.insert(pitches.end(), {point.inputHz, point.outputHz});
    // The output of the last point is not known.
    EXPECT_EQ(pitches, (std::vector<float>{200, 210, 300, 310, 400, 0}));
}

TEST(ScaleGridTest, DistanceIsToTheNearestNoteOfTheScaleAndNotesAreInOrOutOfIt)
{
    const ScaleGrid cMajor = gridWith({});
    EXPECT_NEAR(cMajor.CentsOff(hzAt(0.3)), 30.0, 1e-3);   // over A
    EXPECT_NEAR(cMajor.CentsOff(hzAt(1.1)), 90.0, 1e-3);   // A#, nearer to B
    EXPECT_NEAR(cMajor.CentsOff(hzAt(2.9)), 10.0, 1e-3);   // under the root
    EXPECT_NEAR(cMajor.CentsOff(hzAt(-33.0)), 0.0, 1e-3);  // a root, three octaves down
    const ScaleGrid just = gridWith({{Setting::kIntonation, 1.0f}});
    EXPECT_NEAR(just.CentsOff(hzAt(-5.0)), 14.0, 1e-3);  // E of equal temperament
    EXPECT_NEAR(gridWith({{Setting::kDetune, 50.0f}}).CentsOff(hzAt(0.0)), 50.0, 1e-3);
    const auto notes = gridWith({{Setting::kKey, 0.0f}, {Setting::kScale, 2.0f}}).Notes(56.5, 60.5);
    std::string listing;
    for (const ScaleGrid::Note& note : notes)
        listing += note.name + (note.isRoot ? " root" : note.isInScale ? " in" : " out") + "\n";
    EXPECT_EQ(listing, "A4 root\nA#4 out\nB4 in\nC5 in\n");
    EXPECT_NEAR(notes.front().position, 57.0, 1e-6);
    EXPECT_EQ(gridWith({}).Notes(-0.5, 0.5).front().name, "C0");
}

TEST(PitchTrackTest, OnlyLoudPeriodicSteadyPointsAreVoiced)
{
    const std::vector<float> voice = testVoice(1, 1.0).samples;
    EXPECT_GT(voicedShare(voice, 223.845f), 0.95);
    EXPECT_LT(voicedShare(voice, 310.0f), 0.05) << "not the period of the sound";
    EXPECT_LT(voicedShare(voice, 223.845f, 100.0f), 0.05) << "not steady";

    std::vector<float> soft = voice;
    for (float& sample : soft)
        sample *= 1e-4f;
    EXPECT_EQ(voicedShare(soft, 223.845f), 0.0);
    const std::vector<float> noise = whiteNoise(0.3f, kRate, 1);
    EXPECT_LT(voicedShare(noise, 223.845f), 0.05);
    EXPECT_EQ(voicedShare(std::vector<float>(voice.size(), 0.25f), 223.845f), 0.0) << "an offset";
}

TEST(PitchTrackTest, DistancesAreTheMedianAndThe95thPercentile)
{
    std::vector<PitchPoint> points;
    for (int cents = 100; cents > 0; --cents) {
        const auto hz = static_cast<float>(hzAt(0.004 * cents));
        points.push_back({0.0, hz, 440.0f, 1.0f, 1.0f, true});
        points.push_back({0.0, 466.0f, 466.0f, 1.0f, 1.0f, false});
    }
    const ScaleGrid grid = gridWith({});
    const ScaleDistance before = distanceFromScale(points, grid, &PitchPoint::inputHz);
    EXPECT_NEAR(before.median.value(), 20.0, 0.01);
    EXPECT_NEAR(before.percentile95.value(), 38.0, 0.01);
    const ScaleDistance after = distanceFromScale(points, grid, &PitchPoint::outputHz);
    EXPECT_NEAR(after.percentile95.value(), 0.0, 0.01);
    EXPECT_FALSE(distanceFromScale({}, grid, &PitchPoint::inputHz).median.has_value());
}

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
    const std::string tooEarly = "f is a broken MIDI file: it ends too early";
    const std::pair<Bytes, std::string> files[] = {
        {{}, "f is no Standard MIDI File"},
        {{'R', 'I', 'F', 'F'}, "f is no Standard MIDI File"},
        {head(2, 1, 0, 96) + kTune,
         "f is a MIDI file of format 2: only 0 and 1 have one time for all tracks; export it as "
         "one of these"},
        {head(0, 1, 0, 0) + kTune, "f is a broken MIDI file: its time has no steps"},
        {head(0, 1, 0xE7, 0) + kTune, "f is a broken MIDI file: its time has no steps"},
        {head(0, 2, 0, 96) + kTune, tooEarly},
        {broken({0, 0x90, 60}), tooEarly},
        {broken({0, 0xF0, 0xFF, 0xFF, 0xFF, 0x7F}), tooEarly},
        {broken({0, 60, 0}), "f is a broken MIDI file: a track has data without a status"},
        {broken({0, 0x90, 60, 0x90}), "f is a broken MIDI file: a message is cut off by another"},
        {broken({0x80, 0x80, 0x80, 0x80, 0}),
         "f is a broken MIDI file: a number in it is too long"},
        {broken({0, 0xFF, 0x51, 2, 1, 1}),
         "f is a broken MIDI file: a change of tempo has a wrong length"},
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

TEST(AutomationFileTest, PointsAreSortedByTime)
{
    const auto points = parseAutomation("\xEF\xBB\xBFtime,parameter,value\r\n"
                                        "# a remark\n\n"
                                        " 2.5 , Pitch Correcton Time , 120 \r\n"
                                        "1,\"key\",\"d\"\n"
                                        "1,transposeOnOff,1",
                                        "f");
    ASSERT_EQ(points.size(), 3u);
    EXPECT_EQ(points[0].value.setting, Setting::kKey);
    EXPECT_EQ(points[0].value.value, 5.0f);
    EXPECT_EQ(points[1].value.setting, Setting::kTransposeOnOff);
    EXPECT_EQ(points[2].seconds, 2.5);
    EXPECT_EQ(points[2].value.value, 120.0f);
    EXPECT_TRUE(parseAutomation("", "f").empty());
}

TEST(AutomationFileTest, AWrongLineIsReportedWithItsNumber)
{
    const std::pair<std::string, std::string> lines[] = {
        {"1,key", "'1,key' is no point: write SECONDS,NAME,VALUE, such as 1.5,key,C"},
        {"-1,key,C", "'-1' is no time: write seconds from the start, such as 1.5"},
        {"1s,key,C", "'1s' is no time: write seconds from the start, such as 1.5"},
        {"1,Pitch Correcton Time,401",
         "pitchCorrectionTime cannot be '401': it takes a number from 0 to 400 (ms)"},
        {"1,key," + std::string(1000, 'C'),
         "it is too long: write SECONDS,NAME,VALUE, such as 1.5,key,C"},
    };
    for (const auto& [line, says] : lines)
        expectZException("f, line 3: " + says, [&line = line] {
            static_cast<void>(parseAutomation("\n0,key,C\n" + line + "\n", "f"));
        });
}

}  // namespace orvane
