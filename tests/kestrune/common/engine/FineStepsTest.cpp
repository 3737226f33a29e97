// SPDX-License-Identifier: GPL-3.0-or-later
// The fine tracking beside its plain form.
#include "EngineRun.h"
#include "PlainFine.h"
#include "kestrune/common/engine/KestruneFineAnalysis.h"
#include "kestrune/common/engine/KestruneGlide.h"
#include "kestrune/common/engine/KestruneVibrato.h"
#include "support/Measure.h"
#include "support/Signals.h"
#include "support/Test.h"
#include "tools/singer/Singer.h"
#include "zlib/common/buffers/ZBuffer.h"

using namespace orvane;

namespace
{

/// A voice that swings by an octave, with a rest and a noise in between: quickly made at any rate.
/// A rough one is hoarse, so that it is hard to tell from noise and from a voice an octave lower,
/// and crackles within its notes.
std::vector<float> swingingVoice(float rate, double seconds, bool isRough)
{
    auto sound = whiteNoise(0.2f, static_cast<int>(seconds * static_cast<double>(rate)), 12);
    double phase = 0.0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double at = static_cast<double>(i) / static_cast<double>(rate);
        const bool isRest = at > 0.5 && at < 0.6;
        const bool isNoise = at > 0.9 && at < 1.0;
        phase += 200.0 * std::exp2(0.5 * std::sin(5.0 * at)) / static_cast<double>(rate);
        double sum = 0.0;
        for (int h = 1; h <= 8 && !isRest && !isNoise; ++h)
            sum += std::sin(2.0 * std::numbers::pi * std::fmod(h * phase, 1.0)) / h;
        const double hoarseness = isRough ? 0.5 + 0.5 * std::sin(23.0 * at) : 0.0;
        const double everySecondCycle = std::fmod(0.5 * phase, 1.0) < 0.5 ? 1.0 : -1.0;
        sum *= 1.0 + 0.5 * hoarseness * everySecondCycle;
        const double crackle = isRough && std::fmod(at, 0.37) < 0.02 ? 4.0 : 0.0;
        const auto noise = static_cast<float>(isNoise ? 1.0 : 0.005 + 1.5 * hoarseness + crackle);
        sound[i] = sound[i] * noise + static_cast<float>(0.2 * sum);
    }
    return sound;
}

}  // namespace

TEST(FineStepsTest, RecordsNotesAndSoundAreThoseOfThePlainForm)
{
    const struct
    {
        float rate;
        float correctionMs;
        float pitchShift;  // semitones
        float formantShift;
        double seconds;
        bool isRough = false;
    } rows[] = {{44100.0f, 50.0f, 2.0f, 1.0f, 4.5},
                {96000.0f, 0.0f, -5.0f, -7.0f, 1.5},
                {22050.0f, 0.0f, 0.0f, 0.0f, 4.0, true},
                {16000.0f, 20.0f, 0.0f, 3.0f, 1.5}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.rate);
        std::vector<float> song = row.rate == 44100.0f
                                      ? renderSong(demoSong(), 44100.0)
                                      : swingingVoice(row.rate, row.seconds, row.isRough);
        song.resize(static_cast<std::size_t>(row.seconds * static_cast<double>(row.rate)));
        const int hop = hopAt(row.rate);
        PsolaClass engine;
        engine.SetTracking(KestruneTracking::kFine);
        ASSERT_TRUE(engine.Initialize(row.rate, hop));
        engine.SetFrequencyRange(73.0f, 1318.0f);
        engine.SetScaleTones(kChromatic.data(), static_cast<int>(kChromatic.size()));
        engine.SetCorrectionTime(row.correctionMs);
        engine.SetCorrectionEnabled(true);
        engine.SetTransposeEnabled(true);
        engine.SetPitchShift(row.pitchShift / 12.0f);
        engine.SetFormantShift(row.formantShift / 12.0f);
        const std::vector<float> output = runEngine(engine, hop, song);

        PlainFine plain(static_cast<double>(row.rate), hop, 73.0, 1318.0);
        plain.correctionMs = static_cast<double>(row.correctionMs);
        plain.pitchFactor = std::exp2(static_cast<double>(row.pitchShift) / 12.0);
        plain.formantFactor = std::exp2(static_cast<double>(row.formantShift) / 12.0);
        KestruneFineAnalysis analysis;
        const KestruneGeometry geometry = KestruneGeometry::For(row.rate, hop);
        analysis.Allocate(geometry, row.rate, hop);
        analysis.SetRange(73.0f, 1318.0f);
        analysis.Notes().SetTones(kChromatic.data(), static_cast<int>(kChromatic.size()));
        analysis.Restart(geometry.latency);
        KestruneStereoRing ring;
        ring.Allocate(geometry.inputRingLength);
        std::vector<float> expected;
        int voiced = 0;
        for (std::size_t at = 0; at + static_cast<std::size_t>(hop) <= song.size();
             at += static_cast<std::size_t>(hop))
        {
            const float* const in[] = {song.data() + at, song.data() + at};
            const auto head = static_cast<std::int64_t>(at) + geometry.latency;
            ring.Write(in, ring.Index(head), hop);
            analysis.Begin(ring, head + hop, 0);
            while (analysis.WorkLeft() > 0)
                analysis.Step();
            for (const double sample : plain.Process(song.data() + at))
                expected.push_back(static_cast<float>(sample));
            if (plain.records.size() > 14) {
                const auto& record = plain.records[plain.records.size() - 15];
                const KestruneAnalysisRecord& settled = analysis.Records().Back(14);
                ASSERT_EQ(settled.time, record.time);
                ASSERT_EQ(settled.hold > 0.0f, record.isVoiced) << at;
                ASSERT_NEAR(centsBetween(static_cast<double>(settled.period), record.period), 0.0,
                            0.05);
                if (record.isVoiced) {
                    ASSERT_NEAR(settled.note, record.note, 1e-6) << at;
                }
                voiced += record.isVoiced ? 1 : 0;
            }
        }
        EXPECT_GT(voiced, 50);
        EXPECT_LT(errorDecibels(std::span(output).first(expected.size()), expected), -60.0);
    }
}

TEST(KestruneNoteChoiceTest, ANoteIsLeftWhereTheVoiceGainsTwoSemitonesTimesRecordsByIt)
{
    // Counts and pitches, in semitones above the root, and the note.
    const std::pair<std::vector<std::pair<int, double>>, double> rows[] = {
        {{{15, 0.55}}, 0.0},           // 15 records gain 0.1 each
        {{{15, 0.6}}, 1.0},            // and 0.2 each
        {{{5, 0.6}}, 0.0},             // the voice ends
        {{{3, 0.1}, {12, 1.0}}, 0.0},  // the change comes later
        {{{3, 0.9}, {12, 0.1}}, 0.0},  // a slip
        {{{1, 7.0}, {14, 0.0}}, 0.0},  // one that was read wrong
        {{{15, -1.0}}, -1.0},          // in the octave below
    };
    for (const auto& [sung, note] : rows) {
        KestruneNoteChoice choice;
        choice.SetReferenceFrequency(1.0f);
        choice.SetTones(kChromatic.data(), static_cast<int>(kChromatic.size()));
        const double start = 0.0;
        EXPECT_EQ(choice.Choose({&start, 1}).semitones, 0.0);
        std::vector<double> pitches;
        for (const auto& [count, pitch] : sung)
            pitches.insert(pitches.end(), static_cast<std::size_t>(count), pitch);
        EXPECT_EQ(choice.Choose(pitches).semitones, note) << testing::PrintToString(pitches);
    }
}

TEST(KestruneNoteChoiceTest, NotesAreThoseOfTheScaleInEveryOctaveAndIgnoredOnesAreLeft)
{
    KestruneNoteChoice choice;
    ZBuffer ignored(12, "ZBuffer");
    ignored.Data()[4] = 1.0f;
    choice.SetIgnoredNotes(&ignored);
    choice.SetReferenceFrequency(2.0f);  // the root is 12 above 1 Hz
    const float fifth = 7.0f;
    const auto noteOf = [&](double pitch) {
        choice.SetTones(&fifth, 1);  // forgets the note before
        return choice.Choose({&pitch, 1});
    };
    EXPECT_EQ(noteOf(100.0).semitones, 103.0) << "3 above; the next root below is 4 off";
    EXPECT_EQ(noteOf(106.0).semitones, 108.0) << "the root above is nearer";
    EXPECT_EQ(noteOf(-1.0).semitones, 0.0);
    EXPECT_TRUE(noteOf(100.2).isLeft) << "the degree that is sung counts, not that of the scale";
    EXPECT_FALSE(noteOf(100.9).isLeft);
}

/// Pitches of 25 records at 44.1 kHz, in semitones around 60.
std::vector<double> course(const std::function<double(double)>& semitonesAt)
{
    std::vector<double> pitches;
    for (int i = 0; i < 25; ++i)
        pitches.push_back(60.0 + semitonesAt(i * kHop / 44100.0));
    return pitches;
}

std::optional<double> vibratoMiddle(const std::vector<double>& pitches, int mayBegin = 10)
{
    KestruneVibrato vibrato;
    vibrato.Begin(pitches, mayBegin, 44100.0 / kHop);
    for (int part = 0; part < KestruneVibrato::kParts; ++part)
        vibrato.FitPart(part);
    return vibrato.Middle();
}

TEST(KestruneVibratoTest, OnlyAWideAndEvenSwingHasAMiddle)
{
    const auto middleOf = [](const auto& semitonesAt) {
        return vibratoMiddle(course(semitonesAt));
    };
    for (const double hz : {4.5, 5.3, 6.0, 7.4})
        for (const double extent : {0.7, 1.0, 1.5})
            for (const double phase : {0.0, 0.7, 2.5}) {
                SCOPED_TRACE(testing::Message() << hz << " Hz by " << extent << ", " << phase);
                const double turn = 2.0 * std::numbers::pi * hz;
                const auto sine = [&](double at) { return std::sin(turn * at + phase); };
                const auto middle = middleOf([&](double at) { return extent * sine(at); });
                ASSERT_TRUE(middle);
                EXPECT_NEAR(*middle, 60.0, 0.1);
                EXPECT_FALSE(middleOf([&](double at) { return 0.4 * extent / 1.5 * sine(at); }));
                EXPECT_FALSE(
                    middleOf([&](double at) { return sine(at) > 0.0 ? extent : -extent; }));
                EXPECT_FALSE(
                    middleOf([&](double at) { return extent * std::tanh(3.0 * sine(at)); }));
            }
    // It begins within the earlier pitches.
    const auto late = middleOf([](double at) {
        return at < 0.07 ? 0.0 : std::sin(2.0 * std::numbers::pi * 6.0 * (at - 0.07));
    });
    ASSERT_TRUE(late);
    EXPECT_NEAR(*late, 60.0, 0.1);
    for (const double seconds : {0.01, 0.08, 0.2})
        EXPECT_FALSE(middleOf([&](double at) {
            return 2.0 * std::clamp((at - 0.15) / seconds, 0.0, 1.0);
        })) << "a step of "
            << seconds << " s";
    EXPECT_FALSE(vibratoMiddle({60.0}, 0));
}

TEST(KestruneGlideTest, AQuarterOfTheErrorIsLeftAfterTheTimeAndWithoutOneNothing)
{
    constexpr int kBlock = 500;
    KestruneGlide glide;
    glide.Start(1.5f);
    glide.SetTime(0.1f, 50000.0f, kBlock);  // ten blocks
    EXPECT_TRUE(glide.IsGradual());
    EXPECT_NEAR(glide.Step(1.1f), 1.1 + 0.4 * std::pow(0.25, 0.1), 1e-6);
    for (int block = 1; block < 10; ++block)
        glide.Step(1.1f);
    EXPECT_NEAR(glide.Ratio(), 1.2f, 1e-5f);
    for (const float seconds : {0.0f, -1.0f}) {
        glide.SetTime(seconds, 50000.0f, kBlock);
        EXPECT_FALSE(glide.IsGradual());
        EXPECT_EQ(glide.Step(0.8f), 0.8f);
        glide.Start(1.5f);
    }
}
