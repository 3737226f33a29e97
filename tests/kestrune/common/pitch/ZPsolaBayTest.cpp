// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/EngineRun.h"
#include "kestrune/common/pitch/PsolaBayBench.h"
#include "support/RealtimeGuard.h"
#include "support/Signals.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
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

/// Samples of the first channel in runs of 100 or more zeros.
std::size_t countSilent(const Stereo& output)
{
    std::size_t silent = 0;
    std::size_t run = 0;
    for (const float sample : output[0]) {
        run = sample == 0.0f ? run + 1 : 0;
        silent += run < 100 ? 0 : run == 100 ? 100 : 1;
    }
    return silent;
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

TEST(ZPsolaBayTest, DryOutputIsTheInputDelayedByTheReportedLatency)
{
    const std::vector<std::pair<float, std::int32_t>> latencies{
        {44100.0f, 18871}, {48000.0f, 20536}, {88200.0f, 37722}, {96000.0f, 41063}};
    for (const auto& [rate, latency] : latencies) {
        Bench bench;
        bench.SetSampleRate(rate);
        EXPECT_EQ(bench.bay->GetLatency(), latency);
        const Stereo input = noise(60000);
        const Stereo output = bench.Run(input, {1, 64, 1000, 37, 2048, 511, 513});
        EXPECT_EQ(countNotDelayed(output, input, static_cast<std::size_t>(latency), 0, 60000), 0u);
    }
}

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
    Bench dry;
    static_cast<void>(dry.Run(early));
    dry.SetDiscrete("transposeOnOff", 1);
    static_cast<void>(dry.Run(between));
    dry.SetDiscrete("transposeOnOff", 0);
    const Stereo delayed = dry.Run(late);
    EXPECT_EQ(countNotDelayed(delayed, late, kLatency, kLatency, late[0].size()), 0u);
    EXPECT_EQ(countSilent(delayed), 0u);

    Bench wet;
    Bench steady;
    for (Bench* const bench : {&wet, &steady}) {
        bench->SetDiscrete("transposeOnOff", 1);  // by no shift: alike with and without
        static_cast<void>(bench->Run(early));
    }
    wet.SetDiscrete("transposeOnOff", 0);
    EXPECT_EQ(wet.Run(between), steady.Run(between));
    wet.SetDiscrete("transposeOnOff", 1);
    EXPECT_EQ(wet.Run(late), steady.Run(late));
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

TEST(ZPsolaBayTest, AnElementTakesEffectWhenItsNoticeArrivesAndDefaultsRestTheBayBefore)
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
    for (const float rate : {1.0f, 100.0f, 1e9f}) {
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

TEST(ZPsolaBayTest, PrepareBeginsAgainAndSaysWhenItCannot)
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

TEST(ZPsolaBayTest, MessagesOfOthersChangeNothing)
{
    Bench bench;
    for (const std::uint64_t id : {std::uint64_t{0}, std::uint64_t{12345}}) {
        auto message = boost::make_shared<ZMessage>(ZELEMENTCHANGED);
        message->Add<std::uint64_t>("elementid", id);
        bench.bay->HandleZMessage(message);
    }
    bench.Send(ZELEMENTCHANGED);
    bench.Send(ZBUTTON);
    EXPECT_FALSE(bench.application.HasMessages());
}

TEST(ZPsolaBayTest, CloneHasTheScalesAndElementsOfItsOwn)
{
    Bench bench;
    bench.SetDiscrete("key", 7);
    bench.bay->AddCustomScale(ZString("Mine"), std::vector<std::int32_t>{0, 1});
    const auto clone = boost::dynamic_pointer_cast<ZPsolaBay>(bench.bay->Clone());
    ASSERT_TRUE(clone);
    EXPECT_EQ(clone->ExtractHeader()->Write(0), bench.bay->ExtractHeader()->Write(0));
    const ZElement& elements = *clone->GetElement();
    EXPECT_NE(findBelow(elements, "key")->GetDiscrete(), 7);
    ASSERT_TRUE(clone->Prepare());
    clone->ApplyScale(4, 0);
    EXPECT_EQ(findBelow(elements, "notesInScale")->GetZBuffer()->Data()[1], 1.0f);
    EXPECT_EQ(findBelow(elements, "notesInScale")->GetZBuffer()->Data()[2], 0.0f);
}

TEST(ZPsolaBayTest, ElementsThatOutliveTheBayForgetIt)
{
    const auto elements = Bench().bay->GetElement();
    boost::shared_ptr<ZElement> element;
    for (std::int32_t i = 0; elements->GetSubElement(i, element); ++i)
        EXPECT_EQ(element->GetObserverCount(), 0) << element->GetName();
}

TEST(ZPsolaBayTest, BlocksNeitherAllocateNorWaitWhateverIsPosted)
{
    Bench bench;
    const Stereo input = voice(2 * kBlock);
    Stereo output = input;
    const auto run = [&] {
        const RealtimeGuard guard;
        for (std::size_t at = 0; at < 2 * kBlock; at += 256)
            bench.Call(input, output, at, 256);
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    };
    for (const char* const name : {"pitchCorrectionOnOff", "sourceType", "key", "intonation",
                                   "scale", "transposeOnOff", "pitchReference"})
    {
        for (const std::int32_t value : {1, 2, 0, 1}) {
            bench.SetDiscrete(name, value);
            run();
        }
    }
    bench.SetFlags("notesInScale", {0, 5});
    run();
}

TEST(ZPsolaBayTest, BlocksRunWhileTheInterfaceChangesEverything)
{
    Bench bench;
    bench.SetDiscrete("pitchCorrectionOnOff", 1);
    std::atomic<bool> done{false};
    int wild = 0;
    std::thread audio([&] {
        const Stereo input = voice(kBlock);
        Stereo output = input;
        for (int block = 0; block < 200; ++block) {
            bench.Call(input, output, 0, kBlock);
            for (const float sample : output[0])
                wild += !(std::abs(sample) < 10.0f);  // what is no number, too
        }
        done.store(true);
    });
    for (std::int32_t turn = 0; !done.load(); ++turn) {
        const ZInterfaceLock lock;
        bench.SetDiscrete("transposeOnOff", turn & 1);
        bench.SetDiscrete("sourceType", turn % 5);
        bench.SetDiscrete("key", turn % 12);
        bench.SetDiscrete("pitchCorrectionOnOff", turn % 7 != 0);
        bench.SetDiscrete("scale", turn % 4);
        bench.SetFlags("ignoredNotes", {turn % 12});
        bench.SetFlags("notesInScale", {turn % 12});
        bench.Element("PitchShift").SetZFloat(static_cast<float>(turn % 240) * 10.0f, false);
        bench.Tick();
    }
    audio.join();
    EXPECT_EQ(wild, 0);
}

}  // namespace orvane
