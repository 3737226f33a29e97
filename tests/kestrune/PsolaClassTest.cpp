#include "kestrune/common/PsolaClass.h"
#include "zlib/common/ZBuffer.h"

#include "EngineRun.h"
#include "PlainPsola.h"
#include "support/Measure.h"
#include "support/RealtimeGuard.h"
#include "support/Signals.h"
#include "tools/singer/Singer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace orvane
{

namespace
{

constexpr float kRate = 44100.0f;
constexpr int kHop = 512;
constexpr int kLatency = 18359;
const std::vector<float> kChromatic{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};

std::unique_ptr<PsolaClass> engineAt(float rate, float minHz = 73.0f, float maxHz = 1318.0f)
{
    auto engine = std::make_unique<PsolaClass>();
    EXPECT_TRUE(engine->Initialize(rate, hopAt(rate)));
    engine->SetFrequencyRange(minHz, maxHz);
    engine->SetPitchReference(2);
    return engine;
}

/// A vowel at a pitch that never moves.
std::vector<float> steadyVoice(double pitchHz, double seconds)
{
    return steadyVowel(Vowel::kA, pitchHz, kRate, seconds);
}

/// The stretch that is measured: after the start has passed, before the end is cut.
std::span<const float> settled(const std::vector<float>& output)
{
    return std::span(output).subspan(output.size() - static_cast<std::size_t>(kRate) / 2);
}

float largest(std::span<const float> samples)
{
    float peak = 0.0f;
    for (const float sample : samples)
        peak = std::isfinite(sample) ? std::max(peak, std::fabs(sample)) : HUGE_VALF;
    return peak;
}

double detected(PsolaClass& engine, const std::vector<float>& tone, float rate)
{
    runEngine(engine, hopAt(rate), tone);
    return engine.GetInputPitch();
}

}  // namespace

TEST(PsolaClassTest, FindsFullToneWithinFiveCentsAtEveryRate)
{
    struct Row
    {
        double hz;
        double cents;
    };
    for (const float rate : {44100.0f, 48000.0f, 96000.0f, 192000.0f}) {
        for (const Row& row :
             {Row{110.0, 5.0}, Row{196.0, 5.0}, Row{220.0, 5.0}, Row{330.0, 7.0}, Row{440.0, 5.0}})
        {
            auto engine = engineAt(rate);
            const auto tone = harmonicTone(row.hz, rate, static_cast<int>(rate));
            EXPECT_NEAR(centsBetween(detected(*engine, tone, rate), row.hz), 0.0, row.cents)
                << row.hz << " Hz at " << rate;
        }
    }
}

TEST(PsolaClassTest, EachRangeFindsItsOwnVoices)
{
    struct Row
    {
        float minHz;
        float maxHz;
        double hz;
    };
    for (const Row& row : {Row{73.0f, 494.0f, 98.0}, Row{165.0f, 1318.0f, 660.0},
                           Row{20.0f, 330.0f, 55.0}, Row{330.0f, 2489.0f, 880.0}})
    {
        auto engine = engineAt(kRate, row.minHz, row.maxHz);
        const auto tone = harmonicTone(row.hz, kRate, 44100);
        EXPECT_NEAR(centsBetween(detected(*engine, tone, kRate), row.hz), 0.0, 12.0) << row.hz;
    }
}

TEST(PsolaClassTest, SilenceKeepsThePitchThatStoodBeforeIt)
{
    auto engine = engineAt(kRate);
    const std::vector<float> silence(44100, 0.0f);
    runEngine(*engine, kHop, silence);
    // At first that of the records as they were allocated, (441 + 33) / 2 samples: the repair
    // never lets the silent records, at the lowest candidate, take over.
    EXPECT_NEAR(engine->GetInputPitch(), 44100.0 / 237.0, 0.01);
    runEngine(*engine, kHop, harmonicTone(220.0, kRate, 44100));
    const float sung = engine->GetInputPitch();
    runEngine(*engine, kHop, silence);
    EXPECT_NEAR(centsBetween(engine->GetInputPitch(), sung), 0.0, 10.0);
}

TEST(PsolaClassTest, AtTheUnitRatioASteadyToneComesThroughAtExactlyTheLatency)
{
    for (const double hz : {110.25, 130.0, 150.0, 196.0, 220.0, 330.0, 440.0}) {
        SCOPED_TRACE(hz);
        auto engine = engineAt(kRate);
        const auto tone = harmonicTone(hz, kRate, 3 * 44100);
        const auto output = runEngine(*engine, kHop, tone);
        const auto end = settled(output).first(20000);
        const auto start = tone.size() - settled(output).size() - kLatency;
        const double error = errorDecibels(end, std::span(tone).subspan(start, end.size()));
        // A grain has whole samples: its window is up to half a sample wider than the period, and
        // windows too wide by a share add up to 1 but for a small multiple of that share.
        const double periods = 2.0 * kRate / engine->GetInputPitch();
        const double tooWide = (std::floor(periods) + 1.0) / periods - 1.0;
        EXPECT_LT(error, 20.0 * std::log10(tooWide) + 8.0);
        if (tooWide < 1e-4) {
            EXPECT_LT(error, -70.0);
        }
    }
}

TEST(PsolaClassTest, EverySemitoneOfTranspositionLandsWithinFiveCentsOfWhatItAsksFor)
{
    const auto voice = steadyVoice(220.0, 2.5);
    for (int semitone = -12; semitone <= 12; ++semitone) {
        auto engine = engineAt(kRate);
        engine->SetTransposeEnabled(true);
        engine->SetPitchShift(static_cast<float>(semitone) / 12.0f);
        const auto output = runEngine(*engine, kHop, voice);
        const double asked = engine->GetInputPitch() * std::exp2(semitone / 12.0);
        EXPECT_NEAR(centsBetween(engine->GetOutputPitch(), asked), 0.0, 0.1);
        EXPECT_NEAR(centsBetween(measurePitch(settled(output), kRate, asked), asked), 0.0, 5.0)
            << semitone;
    }
}

TEST(PsolaClassTest, ShiftsWaitForTransposingToBeOn)
{
    const auto voice = steadyVoice(220.0, 1.5);
    auto plain = engineAt(kRate);
    auto shifted = engineAt(kRate);
    shifted->SetPitchShift(0.5f);
    shifted->SetFormantShift(-0.5f);
    EXPECT_EQ(runEngine(*shifted, kHop, voice), runEngine(*plain, kHop, voice));
}

TEST(PsolaClassTest, PitchShiftAloneLeavesTheFormants)
{
    const auto voice = steadyVoice(130.0, 2.5);
    for (const int semitone : {-5, 4, 7}) {
        auto engine = engineAt(kRate);
        engine->SetTransposeEnabled(true);
        engine->SetPitchShift(static_cast<float>(semitone) / 12.0f);
        const auto output = runEngine(*engine, kHop, voice);
        const double pitch = measurePitch(settled(output), kRate, engine->GetOutputPitch());
        EXPECT_NEAR(envelopeShift(settled(voice), 130.0, settled(output), pitch, kRate, 300, 4000),
                    0.0, 0.3)
            << semitone;
    }
}

TEST(PsolaClassTest, FormantShiftMovesTheFormantsAndLeavesThePitch)
{
    const auto voice = steadyVoice(130.0, 2.5);
    for (const int semitone : {-4, 3}) {
        auto engine = engineAt(kRate);
        engine->SetTransposeEnabled(true);
        engine->SetFormantShift(static_cast<float>(semitone) / 12.0f);
        const auto output = runEngine(*engine, kHop, voice);
        EXPECT_NEAR(centsBetween(measurePitch(settled(output), kRate, 130.0), 130.0), 0.0, 5.0);
        EXPECT_NEAR(envelopeShift(settled(voice), 130.0, settled(output), 130.0, kRate, 300, 3500),
                    semitone, 0.7);
    }
}

TEST(PsolaClassTest, CorrectionBringsAVoiceOntoTheNearestToneOfTheScale)
{
    for (const double cents : {-45.0, 20.0, 40.0}) {
        auto engine = engineAt(kRate);
        engine->SetCorrectionEnabled(true);
        engine->SetScaleTones(kChromatic.data(), static_cast<int>(kChromatic.size()));
        engine->SetCorrectionTime(50.0f);
        const auto voice = steadyVoice(220.0 * std::exp2(cents / 1200.0), 2.5);
        const auto output = runEngine(*engine, kHop, voice);
        EXPECT_NEAR(centsBetween(measurePitch(settled(output), kRate, 220.0), 220.0), 0.0, 5.0);
        EXPECT_NEAR(engine->GetCorrectionCents(), -cents, 5.0);
        engine->SetCorrectionEnabled(false);
        EXPECT_EQ(engine->GetCorrectionCents(), 0.0f);
    }
}

TEST(PsolaClassTest, BothChannelsShareMarksAndGrains)
{
    const auto voice = steadyVoice(200.0, 1.5);
    std::vector<float> half(voice);
    for (float& sample : half)
        sample *= -0.5f;
    auto engine = engineAt(kRate);
    engine->SetPitchReference(0);
    engine->SetTransposeEnabled(true);
    engine->SetPitchShift(0.3f);
    const auto output = runEngine(*engine, kHop, voice, half);
    for (std::size_t i = 0; i < voice.size(); ++i)
        ASSERT_EQ(output.right[i], -0.5f * output.left[i]) << i;
}

TEST(PsolaClassTest, OutputIsThatOfThePlainForm)
{
    std::vector<float> song;
    for (const float sample : renderSong(demoSong(), kRate))
        song.push_back(sample);
    song.resize(8 * 44100);
    struct Row
    {
        bool correction;
        float pitch;
        float formant;
    };
    for (const Row& row : {Row{false, 0.0f, 0.0f}, Row{true, 0.0f, 0.0f}, Row{true, -0.4f, -1.0f},
                           Row{false, 0.75f, 0.5f}})
    {
        SCOPED_TRACE(row.pitch);
        auto engine = engineAt(kRate);
        PlainPsola plain(kRate, kHop, 73.0f, 1318.0f);
        engine->SetTransposeEnabled(true);
        engine->SetPitchShift(row.pitch);
        engine->SetFormantShift(row.formant);
        plain.SetShifts(row.pitch, row.formant);
        if (row.correction) {
            engine->SetScaleTones(kChromatic.data(), static_cast<int>(kChromatic.size()));
            engine->SetCorrectionTime(50.0f);
            engine->SetCorrectionEnabled(true);
            plain.SetCorrection(440.0f, kChromatic, 0.05f);
        }
        const auto output = runEngine(*engine, kHop, song);
        float difference = 0.0f;
        for (std::size_t at = 0; at + kHop <= song.size(); at += kHop) {
            const auto block =
                plain.Process({song.begin() + static_cast<std::ptrdiff_t>(at),
                               song.begin() + static_cast<std::ptrdiff_t>(at) + kHop});
            for (std::size_t i = 0; i < kHop; ++i)
                difference = std::max(difference, std::fabs(block[i] - output[at + i]));
        }
        EXPECT_LT(difference, 1e-5f);
    }
}

TEST(PsolaClassTest, ProcessNeitherAllocatesNorLocksNorCallsTheSystem)
{
    auto engine = engineAt(kRate);
    ZBuffer ignored(12, "ZBuffer");
    engine->SetIgnoredNotes(&ignored);
    engine->SetTransposeEnabled(true);
    engine->SetCorrectionEnabled(true);
    const auto voice = steadyVoice(220.0, 1.0);
    std::vector<float> left(kHop);
    std::vector<float> right(kHop);
    const auto work = [&] {
        for (int block = 0; block < 80; ++block) {
            const float* const in[] = {voice.data() + block * kHop, voice.data() + block * kHop};
            float* const out[] = {left.data(), right.data()};
            engine->SetPitchShift(static_cast<float>(block % 25 - 12) / 12.0f);
            engine->SetFormantShift(static_cast<float>(12 - block % 25) / 12.0f);
            engine->SetCorrectionTime(static_cast<float>(block));
            if (block % 20 == 0)
                engine->SetFrequencyRange(block == 40 ? 20.0f : 73.0f, 1318.0f);
            if (block == 60)
                engine->Reset();
            engine->Process(in, out, kHop);
        }
    };
    RealtimeGuard guard;
    work();
    EXPECT_EQ(guard.violations(), 0u);
}

TEST(PsolaClassTest, AnySoundGivesFiniteOutputAtEveryRate)
{
    for (const float rate : {8000.0f, 22050.0f, 44100.0f, 96000.0f, 384000.0f}) {
        SCOPED_TRACE(rate);
        auto engine = engineAt(rate);
        ZBuffer ignored(12, "ZBuffer");
        engine->SetIgnoredNotes(&ignored);
        engine->SetCorrectionEnabled(true);
        engine->SetCorrectionTime(0.0f);
        engine->SetTransposeEnabled(true);
        const int length = static_cast<int>(rate) / 2;
        for (const float octaves : {-1.0f, 1.0f}) {
            engine->SetPitchShift(octaves);
            engine->SetFormantShift(-octaves);
            EXPECT_LT(largest(runEngine(*engine, hopAt(rate), square(311.0, 1.0f, rate, length))),
                      9.0f);
            EXPECT_LT(largest(runEngine(*engine, hopAt(rate), whiteNoise(1.0f, length, 3))), 9.0f);
            const std::vector<float> tiny(static_cast<std::size_t>(length), 1.0e-40f);
            EXPECT_LT(largest(runEngine(*engine, hopAt(rate), tiny)), 9.0f);
        }
    }
}

TEST(PsolaClassTest, OneBadBlockNeitherReachesTheOutputNorEndsDetection)
{
    for (const float bad : {std::nanf(""), std::numeric_limits<float>::infinity(), 1.0e35f}) {
        auto engine = engineAt(kRate);
        auto voice = steadyVoice(220.0, 2.0);
        std::fill_n(voice.begin() + 22050, 700, bad);
        const auto output = runEngine(*engine, kHop, voice);
        EXPECT_LT(largest(output), 4.0f);
        EXPECT_NEAR(centsBetween(engine->GetInputPitch(), 220.0), 0.0, 6.0);
    }
}

TEST(PsolaClassTest, ResetForgetsTheSoundAndGoesOn)
{
    auto engine = engineAt(kRate);
    const auto voice = steadyVoice(220.0, 1.5);
    runEngine(*engine, kHop, voice);
    engine->Reset();
    EXPECT_EQ(engine->GetInputPitch(), (73.0f + 1318.0f) * 0.5f);
    EXPECT_EQ(engine->GetOutputPitch(), engine->GetInputPitch());
    const auto output = runEngine(*engine, kHop, voice);
    // No sample of what came before: the first grain's reach before the delayed start is silent.
    EXPECT_EQ(largest(std::span(output).first(kLatency - 2000)), 0.0f);
    EXPECT_GT(largest(settled(output)), 0.1f);
}

TEST(PsolaClassTest, SettingsGivenBeforeTheFirstBlockAreInForceInIt)
{
    // A range that is set before the engine is made ready is the one it starts with.
    auto before = std::make_unique<PsolaClass>();
    before->SetFrequencyRange(165.0f, 1318.0f);
    before->SetPitchReference(2);
    ASSERT_TRUE(before->Initialize(kRate, kHop));
    auto after = engineAt(kRate, 165.0f, 1318.0f);
    runEngine(*after, kHop, {});
    const auto voice = steadyVoice(330.0, 1.5);
    runEngine(*before, kHop, voice);
    runEngine(*after, kHop, voice);
    EXPECT_NEAR(before->GetInputPitch(), after->GetInputPitch(), 1e-3);
}

TEST(PsolaClassTest, AChangeOfRateOrBlockStartsAfresh)
{
    auto engine = engineAt(kRate);
    EXPECT_EQ(engine->GetLatency(), kLatency);
    EXPECT_TRUE(engine->SetSampleRate(kRate));
    ASSERT_TRUE(engine->SetSampleRate(48000.0f));
    ASSERT_TRUE(engine->SetBlockSize(557));
    EXPECT_EQ(engine->GetLatency(), 19979);
    runEngine(*engine, 557, harmonicTone(220.0, 48000.0, 48000));
    EXPECT_NEAR(centsBetween(engine->GetInputPitch(), 220.0), 0.0, 5.0);
    EXPECT_FALSE(engine->SetSampleRate(100.0f));
    EXPECT_EQ(engine->GetLatency(), 0);
    ASSERT_TRUE(engine->Initialize(kRate, kHop));
    EXPECT_EQ(engine->GetLatency(), kLatency);
}

TEST(PsolaClassTest, InputAndOutputMayBeTheSameArrays)
{
    auto apart = engineAt(kRate);
    auto inPlace = engineAt(kRate);
    auto left = steadyVoice(220.0, 1.0);
    auto right = left;
    const auto expected = runEngine(*apart, kHop, left);
    for (std::size_t at = 0; at + kHop <= left.size(); at += kHop) {
        float* const channels[] = {left.data() + at, right.data() + at};
        inPlace->Process(channels, channels, kHop);
    }
    const auto whole = left.size() / kHop * kHop;
    EXPECT_TRUE(std::equal(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(whole),
                           left.begin()));
}

}  // namespace orvane
