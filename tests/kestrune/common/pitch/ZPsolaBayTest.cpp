// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/EngineRun.h"
#include "kestrune/common/pitch/PsolaBayBench.h"
#include "support/Signals.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace orvane
{

namespace
{

constexpr std::size_t kBlock = 512;           // at 44100 Hz
constexpr std::size_t kLatency = 18871;       // of engine and block
constexpr std::size_t kChange = 37 * kBlock;  // until the path on the air changes

Stereo noise(std::size_t samples)
{
    const int count = static_cast<int>(samples);
    return {whiteNoise(0.5f, count, 1), whiteNoise(0.5f, count, 2)};
}

Stereo voice(std::size_t samples)
{
    const int count = static_cast<int>(samples);
    return {harmonicTone(227.0, 44100.0, count), whiteNoise(0.1f, count, 3)};
}

/// Samples in [from, to) at which output is not input delay samples earlier, with silence before.
std::size_t countNotDelayed(const Stereo& output, const Stereo& input, std::size_t delay,
                            std::size_t from, std::size_t to)
{
    std::size_t wrong = 0;
    for (std::size_t channel = 0; channel < output.size(); ++channel)
        for (std::size_t i = from; i < to; ++i)
            wrong += output[channel][i] != (i < delay ? 0.0f : input[channel][i - delay]);
    return wrong;
}

/// A bay that is ready and at rest.
class Bench : public PsolaBayBench<>
{
public:
    explicit Bench(std::int32_t channels = 2)
        : PsolaBayBench(channels)
    {
        EXPECT_TRUE(bay->Prepare());
        Tick();
    }
};

}  // namespace

TEST(ZPsolaBayTest, EverySettingReachesTheEngineWhichTakesTheAirAfterOneLatency)
{
    Bench bench;
    bench.SetDiscrete("key", 5);
    bench.SetDiscrete("intonation", 1);
    bench.SetDiscrete("sourceType", 1);
    bench.SetDiscrete("pitchReference", 0);
    bench.Element("detune").SetZFloat(20.0f, false);
    bench.Element("pitchCorrectionTime").SetZFloat(5.0f, false);
    bench.Element("PitchShift").SetZFloat(-300.0f, false);
    bench.Element("FormantShift").SetZFloat(200.0f, false);
    bench.SetFlags("notesInScale", {0, 6, 9});
    bench.SetFlags("ignoredNotes", {6});
    bench.SetDiscrete("pitchCorrectionOnOff", 1);
    bench.SetDiscrete("transposeOnOff", 1);
    const Stereo input = voice(90 * kBlock);
    const Stereo output = bench.Run(input, {333, 512, 2000});

    ZBuffer ignored(12, "ZBuffer");
    ignored.Data()[6] = 1.0f;
    const KestruneTones tones = tonesOf(std::vector<std::int32_t>{0, 6, 9}, 1);
    PsolaClass engine;
    ASSERT_TRUE(engine.Initialize(44100.0f, kBlock));
    engine.SetScaleTones(tones.values.data(), tones.count);
    engine.SetReferenceFrequency(referenceFrequency(5, 20.0f));
    engine.SetCorrectionTime(5.0f);
    engine.SetFrequencyRange(73.0f, 494.0f);
    engine.SetPitchReference(0);
    engine.SetPitchShift(-0.25f);
    engine.SetFormantShift(200.0f / 1200.0f);
    engine.SetIgnoredNotes(&ignored);
    engine.SetTransposeEnabled(true);
    engine.SetCorrectionEnabled(true);
    const Stereo expected = runEngine(engine, kBlock, input);

    // The old, dry path first, then the engine, a block later than by itself.
    EXPECT_EQ(countNotDelayed(output, input, kLatency, 0, kChange), 0u);
    EXPECT_EQ(countNotDelayed(output, expected, kBlock, kChange, 90 * kBlock), 0u);
    EXPECT_EQ(bench.Element("correctionMeter").GetZFloat(), engine.GetCorrectionCents());
    EXPECT_EQ(bench.Element("inputPitch").GetZFloat(), engine.GetInputPitch());
    EXPECT_EQ(bench.Element("outputPitch").GetZFloat(), engine.GetOutputPitch());

    // Later on what is new and nothing else; of correction also a switch to the state that was.
    const Stereo more = voice(20 * kBlock);
    const auto expectAlike = [&] {
        const Stereo later = bench.Run(more);
        const Stereo alone = runEngine(engine, kBlock, more);
        EXPECT_EQ(countNotDelayed(later, alone, kBlock, kBlock, 20 * kBlock), 0u);
    };
    bench.SetDiscrete("pitchCorrectionOnOff", 1);
    engine.SetCorrectionEnabled(true);
    expectAlike();
    bench.SetDiscrete("key", 6);  // the voice comes to a note that is ignored
    engine.SetReferenceFrequency(referenceFrequency(6, 20.0f));
    expectAlike();
}

TEST(ZPsolaBayTest, SwitchingOffLeavesTheEngineOnTheAirForOneLatency)
{
    Bench bench;
    bench.Element("PitchShift").SetZFloat(700.0f, false);
    bench.SetDiscrete("transposeOnOff", 1);
    const Stereo early = voice(60 * kBlock);
    const Stereo late = voice(80 * kBlock);
    static_cast<void>(bench.Run(early));
    bench.SetDiscrete("transposeOnOff", 0);
    const Stereo output = bench.Run(late);

    PsolaClass engine;
    ASSERT_TRUE(engine.Initialize(44100.0f, kBlock));
    engine.SetFrequencyRange(73.0f, 1318.0f);
    engine.SetPitchReference(2);
    engine.SetPitchShift(700.0f / 1200.0f);
    engine.SetTransposeEnabled(true);
    static_cast<void>(runEngine(engine, kBlock, early));
    engine.SetTransposeEnabled(false);
    const Stereo old = runEngine(engine, kBlock, late);
    EXPECT_EQ(countNotDelayed(output, old, kBlock, kBlock, kChange), 0u);
    EXPECT_EQ(countNotDelayed(output, late, kLatency, kChange, late[0].size()), 0u);
    EXPECT_EQ(bench.Element("outputPitch").GetZFloat(), 0.0f);
}

TEST(ZPsolaBayTest, SwitchingBackBeforeTheOutputHasChangedLeavesThePathThatIsHeard)
{
    // Long enough before the switches that neither path holds anything of what comes after.
    const Stereo early = voice(90 * kBlock);
    const Stereo between = voice(5 * kBlock);
    const Stereo late = voice(90 * kBlock);
    for (const std::int32_t on : {0, 1}) {
        Bench switched;
        Bench steady;
        for (Bench* const bench : {&switched, &steady}) {
            bench->SetDiscrete("transposeOnOff", on);  // by no shift: alike with and without
            static_cast<void>(bench->Run(early));
        }
        switched.SetDiscrete("transposeOnOff", 1 - on);
        EXPECT_EQ(switched.Run(between), steady.Run(between));
        switched.SetDiscrete("transposeOnOff", on);
        EXPECT_EQ(switched.Run(late), steady.Run(late));
    }
}

TEST(ZPsolaBayTest, AStopOnTheAudioThreadMayMeetAChangeOfRateOnAnother)
{
    Bench bench;
    std::atomic<bool> done{false};
    std::thread audio([&] {
        while (!done.load())
            bench.bay->Reset();
    });
    for (int i = 0; i < 40; ++i) {
        const ZInterfaceLock lock;
        bench.SetSampleRate(i % 2 == 0 ? 48000.0f : 44100.0f);
    }
    done.store(true);
    audio.join();
    const Stereo input = noise(2 * kLatency);
    EXPECT_EQ(countNotDelayed(bench.Run(input), input, kLatency, 0, 2 * kLatency), 0u);
}

TEST(ZPsolaBayTest, AnElementTakesEffectAtItsNotificationAndDefaultsRestTheBayBefore)
{
    Bench bench;
    const auto sungPitch = [&bench] {
        static_cast<void>(bench.Run(noise(kBlock)));
        return bench.Element("inputPitch").GetZFloat();
    };
    bench.Element("pitchCorrectionOnOff").SetDiscrete(1, false);
    EXPECT_EQ(sungPitch(), 0.0f);
    bench.Tick();
    EXPECT_NE(sungPitch(), 0.0f);
    bench.Send(ZSETDEFAULTS);
    EXPECT_EQ(sungPitch(), 0.0f);
    EXPECT_EQ(bench.Element("pitchCorrectionOnOff").GetDiscrete(), 0);
}

TEST(ZPsolaBayTest, OneChannelIsTreatedAsTwoAlike)
{
    Bench stereo;
    Bench mono(1);
    const Stereo sung = voice(60 * kBlock);
    for (Bench* const bench : {&stereo, &mono})
        bench->SetDiscrete("pitchCorrectionOnOff", 1);
    const Stereo expected = stereo.Run({sung[0], sung[0]});
    const Stereo output = mono.Run({sung[0]});
    EXPECT_EQ(output[0], expected[0]);
    EXPECT_EQ(expected[1], expected[0]);
}

TEST(ZPsolaBayTest, ResetSilencesBothPathsAndShowsDefaults)
{
    for (const std::int32_t on : {0, 1}) {
        Bench bench;
        bench.SetDiscrete("transposeOnOff", on);
        static_cast<void>(bench.Run(noise(80 * kBlock)));
        bench.Send(ZRESET);
        EXPECT_EQ(bench.Element("inputPitch").GetZFloat(), 100.0f);
        EXPECT_TRUE(bench.Element("inputPitch").IsMarkedChanged());
        const Stereo silence{std::vector<float>(80 * kBlock), std::vector<float>(80 * kBlock)};
        EXPECT_EQ(bench.Run(silence), silence);
    }
}

TEST(ZPsolaBayTest, RateThatNoEngineTakesLeavesTheVoiceDry)
{
    Bench bench;
    bench.SetDiscrete("transposeOnOff", 1);
    for (const float rate : {1.0f, 1e9f}) {
        bench.SetSampleRate(rate);
        const std::int32_t latency = bench.bay->GetLatency();
        EXPECT_EQ(latency, bench.bay->GetBlockSize() + 18359);
        const Stereo input = noise(90000);
        const Stereo output = bench.Run(input, {700});
        EXPECT_EQ(countNotDelayed(output, input, static_cast<std::size_t>(latency), 0, 90000), 0u);
    }
    // Rates that it takes may follow by any factor, and settings stay.
    for (const float rate : {44100.0f, 768000.0f, 8000.0f, 48000.0f}) {
        bench.SetSampleRate(rate);
        EXPECT_NEAR(static_cast<float>(bench.bay->GetLatency()) / rate, 0.428f, 0.002f);
        static_cast<void>(bench.Run(noise(20000)));
        EXPECT_NE(bench.Element("outputPitch").GetZFloat(), 0.0f);
    }
}

TEST(ZPsolaBayTest, PrepareBeginsAgainAndReportsWhenItCannot)
{
    PsolaBayBench<> bench;
    bench.SetSampleRate(100.0f);
    EXPECT_FALSE(bench.bay->Prepare());
    const Stereo input = noise(100);
    EXPECT_EQ(countNotDelayed(bench.Run(input, {7}), input, 1, 0, 100), 0u);
    bench.SetSampleRate(44100.0f);
    ASSERT_TRUE(bench.bay->Prepare());
    bench.SetDiscrete("key", 7);
    ASSERT_TRUE(bench.bay->Prepare());
    EXPECT_EQ(bench.Element("key").GetDiscrete(), 3);
}

TEST(ZPsolaBayTest, CloneHasTheScalesAndElementsOfItsOwn)
{
    Bench bench;
    bench.SetDiscrete("key", 7);
    bench.bay->AddCustomScale(ZString("Mine"), std::vector<std::int32_t>{0, 1});
    const auto clone = boost::dynamic_pointer_cast<ZPsolaBay>(bench.bay->Clone());
    ASSERT_TRUE(clone && clone->Prepare());
    const ZElement& elements = *clone->GetElement();
    EXPECT_NE(findBelow(elements, "key")->GetDiscrete(), 7);
    clone->ApplyScale(4, 0);
    EXPECT_EQ(findBelow(elements, "notesInScale")->GetZBuffer()->Data()[1], 1.0f);
    EXPECT_EQ(findBelow(elements, "notesInScale")->GetZBuffer()->Data()[2], 0.0f);
}

TEST(ZPsolaBayTest, ElementsThatOutliveTheBayForgetIt)
{
    const auto elements = Bench().bay->GetElement();
    EXPECT_EQ(findBelow(*elements, "key")->GetObserverCount(), 0);
}

}  // namespace orvane
