// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/EngineRun.h"
#include "kestrune/common/pitch/PsolaBayBench.h"
#include "support/BoxRecorder.h"
#include "support/Measure.h"
#include "support/RealtimeGuard.h"
#include "support/Signals.h"
#include "support/Test.h"
#include "zlib/common/objects/ZInterfaceLock.h"

using namespace orvane;

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

Stereo voice(std::size_t samples, unsigned seed = 3)
{
    const int count = static_cast<int>(samples);
    return {harmonicTone(227.0, 44100.0, count), whiteNoise(0.1f, count, seed)};
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

using Degrees = std::vector<std::int32_t>;
using Applied = std::pair<int, int>;

const Degrees kMajor{0, 2, 4, 5, 7, 9, 11};

/// Notes the scales that are put in force.
struct ScaleBay : ZPsolaBay
{
    using ZPsolaBay::ZPsolaBay;
    void ApplyScale(int scaleIndex, int intonationIndex) override
    {
        applied.emplace_back(scaleIndex, intonationIndex);
        ZPsolaBay::ApplyScale(scaleIndex, intonationIndex);
    }
    std::vector<Applied> applied;
};

/// A bay that is ready and at rest.
struct Bench : PsolaBayBench<ScaleBay>
{
    explicit Bench(std::int32_t channels = 2)
        : PsolaBayBench(channels)
    {
        EXPECT_TRUE(bay->Prepare());
        Tick();
    }

    using Values = std::vector<std::pair<const char*, float>>;

    /// Sets elements, floats or discrete ones, in one tick.
    void Set(const Values& values)
    {
        for (const auto& [name, value] : values) {
            ZElement& element = Element(name);
            element.GetType() == ZElement::ZFLOAT
                ? element.SetZFloat(value, false)
                : element.SetDiscrete(static_cast<std::int32_t>(value), false);
        }
        Tick();
    }
    void Restore(const std::string& archive)
    {
        bay->RestoreBody(xmlOf(archive));
        application.ProcessQueue();
    }
    void Add(int count)
    {
        for (int i = 0; i < count; ++i)
            bay->AddCustomScale(ZString("Mine " + std::to_string(i)), Degrees{i % 11 + 1});
    }
};

/// The bay's archive, with the name that every buffer has once it was restored.
std::string archiveOf(const ZPsolaBay& bay)
{
    std::string text = bay.ExtractXML()->Write(0);
    const std::string name = "ElementBuffer";
    for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name))
        text.replace(at, name.size(), "buffer");
    return text;
}

std::vector<std::string> namesOf(const ZElement& element)
{
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < element.CountDiscreteValues(); ++i)
        names.push_back(element.GetDiscreteString(i)->ToNarrow());
    return names;
}

}  // namespace

TEST(ZPsolaBayTest, EverySettingReachesTheEngineWhichTakesTheAirAfterOneLatency)
{
    Bench bench;
    bench.Set({{"key", 5}, {"intonation", 1}, {"sourceType", 1}, {"pitchReference", 0}});
    bench.Set({{"detune", 20}, {"pitchCorrectionTime", 5}});
    bench.Set({{"PitchShift", -300}, {"FormantShift", 200}});
    bench.SetFlags("notesInScale", {0, 6, 9});
    bench.SetFlags("ignoredNotes", {6});
    bench.Set({{"pitchCorrectionOnOff", 1}, {"transposeOnOff", 1}});
    const Stereo input = voice(90 * kBlock);
    const Stereo output = bench.Run(input, {333, 512, 2000});

    ZBuffer ignored(12, "ZBuffer");
    ignored.Data()[6] = 1.0f;
    const KestruneTones tones = tonesOf(Degrees{0, 6, 9}, 1);
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
    const Stereo more = voice(20 * kBlock, 4);
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
    bench.Set({{"PitchShift", 700}, {"transposeOnOff", 1}});
    const Stereo early = voice(60 * kBlock);
    const Stereo late = voice(80 * kBlock, 4);
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
    const Stereo between = voice(5 * kBlock, 4);
    const Stereo late = voice(90 * kBlock, 5);
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

TEST(ZPsolaBayTest, WithTheFineTrackingOutputFadesBetweenThePathsAndNothingClicks)
{
    // Each row is a change while the voice sounds, and whether it changes the path on the output.
    const std::pair<Bench::Values, bool> rows[] = {
        {{{"PitchShift", 300}, {"transposeOnOff", 1}}, true},
        {{{"PitchShift", -500}, {"FormantShift", -500}, {"sourceType", 2}}, false},  // a program
        {{{"pitchCorrectionOnOff", 1}, {"key", 9}}, false},
        {{{"PitchShift", 50}, {"FormantShift", 0}, {"sourceType", 0}, {"detune", -50}}, false},
        {{{"transposeOnOff", 0}, {"pitchCorrectionOnOff", 0}}, true},
        {{{"pitchCorrectionOnOff", 1}}, true}};
    const int piece = 80 * kBlock;
    // Low enough for what the grains' linear interpolation adds above 7 kHz.
    const auto sung = harmonicTone(227.0, 44100.0, 7 * piece, 1200.0);
    for (const auto tracking : {KestruneTracking::kClassic, KestruneTracking::kFine}) {
        Bench bench;
        bench.bay->SetTracking(tracking);
        Stereo heard = bench.Run(Stereo(2, {sung.begin(), sung.begin() + piece}));
        auto at = sung.begin() + piece;
        for (const auto& [changes, isOfPaths] : rows) {
            bench.Set(changes);
            heard = bench.Run(Stereo(2, {at, at + piece}));
            at += piece;
            const double clicks = clickDecibels(heard[0], 44100.0);
            if (tracking == KestruneTracking::kFine) {
                EXPECT_LT(clicks, -60.0) << changes[0].first;
            } else if (isOfPaths) {
                EXPECT_GT(clicks, -60.0) << changes[0].first << " is hard, as it was";
            }
        }
    }
}

TEST(ZPsolaBayTest, TheFineTrackingAndItsSwitchHaveNothingThatWaitsOnTheAudioThread)
{
    Bench bench;
    const Stereo input = voice(60 * kBlock);
    Stereo output = input;
    for (const auto& [tracking, on] : {std::pair(KestruneTracking::kFine, 1),
                                       {KestruneTracking::kClassic, 1},
                                       {KestruneTracking::kFine, 0}})
    {
        bench.bay->SetTracking(tracking);
        bench.SetDiscrete("transposeOnOff", on);
        const RealtimeGuard guard;
        for (std::size_t at = 0; at + 64 <= input[0].size(); at += 64)
            bench.Call(input, output, at, 64);
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
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
    for (const float rate : {768000.0f, 8000.0f, 48000.0f}) {
        bench.SetSampleRate(rate);
        EXPECT_NEAR(static_cast<float>(bench.bay->GetLatency()) / rate, 0.428f, 0.002f);
        static_cast<void>(bench.Run(noise(20000)));
        EXPECT_NE(bench.Element("outputPitch").GetZFloat(), 0.0f);
    }
}

TEST(ZPsolaBayTest, PrepareBeginsAgainAndReportsWhenItCannot)
{
    PsolaBayBench<ScaleBay> bench;
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
    bench.bay->AddCustomScale(ZString("Mine"), Degrees{0, 1});
    const auto clone = boost::dynamic_pointer_cast<ZPsolaBay>(bench.bay->Clone());
    ASSERT_TRUE(clone && clone->Prepare());
    const auto elements = clone->GetElement();
    EXPECT_NE(findBelow(*elements, "key")->GetDiscrete(), 7);
    clone->ApplyScale(4, 0);
    const float* const notes = findBelow(*elements, "notesInScale")->GetZBuffer()->Data();
    EXPECT_EQ(degreesOf({notes, 12}), (Degrees{0, 1}));
    const auto orphans = Bench().bay->GetElement();
    EXPECT_EQ(findBelow(*orphans, "key")->GetObserverCount(), 0) << "they forget the bay";
}

TEST(ZPsolaBayScalesTest, ChosenAndEditedScalesExcludeEachOther)
{
    Bench bench;
    const auto isInForce = [&bench](const Applied& scale, const Degrees& notes, bool modified) {
        EXPECT_EQ(bench.bay->applied.back(), scale);
        EXPECT_EQ(bench.Flags("notesInScale"), notes);
        EXPECT_EQ(bench.Element("currentScaleModified").GetDiscrete(), modified ? 1 : 0);
    };
    isInForce({1, 0}, kMajor, false);  // the default
    bench.bay->applied.clear();
    bench.SetDiscrete("scale", 3);
    isInForce({3, 0}, {0, 3, 5, 6, 7, 10}, false);
    bench.Tick();
    EXPECT_EQ(bench.bay->applied.size(), 1u) << "the bay does not hear the notes that it shows";

    bench.SetFlags("notesInScale", {0, 6});
    isInForce({-1, 0}, {0, 6}, true);
    EXPECT_EQ(bench.Flags("currentCustomScale"), (Degrees{0, 6}));
    bench.SetDiscrete("scale", 1);
    isInForce({1, 0}, kMajor, false);

    // A change of intonation takes the chosen scale, also when notes were edited.
    bench.SetFlags("notesInScale", {0, 6});
    bench.SetDiscrete("intonation", 4);
    isInForce({1, 4}, kMajor, true);
    // Copies between elements need no engine, and scales do.
    PsolaBayBench<ScaleBay> idle;
    idle.SetFlags("notesInScale", {0, 6});
    idle.SetDiscrete("scale", 3);
    EXPECT_EQ(idle.Flags("currentCustomScale"), (Degrees{0, 6}));
    EXPECT_EQ(idle.Flags("notesInScale"), (Degrees{0, 6}));
    EXPECT_TRUE(idle.bay->applied.empty());
}

TEST(ZPsolaBayScalesTest, RestoredIndexGivesWayToEditedNotes)
{
    Bench bench;
    bench.Element("currentScaleIndex").SetZFloat(2.0f, false);
    bench.Tick();
    EXPECT_EQ(bench.Element("scale").GetDiscrete(), 2);
    EXPECT_EQ(bench.bay->applied.back(), Applied(2, 0));

    bench.Element("currentScaleModified").SetDiscrete(1, true);
    bench.SetFlags("currentCustomScale", {0, 1});
    bench.Element("currentScaleIndex").SetZFloat(3.0f, false);
    bench.Tick();
    EXPECT_EQ(bench.bay->applied.back(), Applied(-1, 0));
    EXPECT_EQ(bench.Flags("notesInScale"), (Degrees{0, 1}));
    EXPECT_EQ(bench.Element("scale").GetDiscrete(), 3);
}

TEST(ZPsolaBayScalesTest, TheUserIsToldOnceWhenTheArchiveIsFull)
{
    BoxRecorder recorder;
    Bench bench;
    bench.Add(15);
    EXPECT_TRUE(recorder.boxes.empty());
    bench.Add(3);
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].kind, ZMessageBox::kWarning);
    EXPECT_TRUE(recorder.boxes[0].text.starts_with(
        "You have added the maximum number of custom scales that may be saved in a preset"));
    bench.SetDiscrete("scale", 21);
    EXPECT_EQ(bench.Flags("notesInScale"), (Degrees{0, 3}));
}

TEST(ZPsolaBayScalesTest, SixteenScalesComeBackAndTheSeventeenthIsANameOnly)
{
    const BoxRecorder recorder;
    Bench bench;
    bench.Add(17);
    bench.SetDiscrete("scale", 19);
    const std::string archive = archiveOf(*bench.bay);

    Bench other;
    other.Add(2);
    other.Restore(archive);
    EXPECT_EQ(namesOf(other.Element("scale")), namesOf(bench.Element("scale")));
    EXPECT_EQ(other.Element("scale").GetDiscrete(), 19);
    EXPECT_EQ(other.Flags("notesInScale"), (Degrees{0, 5}));
    for (std::int32_t scale = 0; scale < 16; ++scale) {
        other.SetDiscrete("scale", 4 + scale);
        EXPECT_EQ(other.Flags("notesInScale"), (Degrees{0, scale % 11 + 1}));
    }
    other.SetDiscrete("scale", 20);
    EXPECT_EQ(other.Flags("notesInScale").size(), 12u);
    other.SetDiscrete("scale", 19);
    EXPECT_TRUE(archiveOf(*other.bay) == archive);

    Bench few;
    few.bay->AddCustomScale("Odd", Degrees{11, 0, -1, 12, 3, 11});
    few.SetDiscrete("scale", 4);
    EXPECT_EQ(few.Flags("notesInScale"), (Degrees{0, 3, 11})) << "degrees only";
    archiveOf(*few.bay);
    EXPECT_EQ(few.Element("customScaleTones").GetZBuffer()->Data()[12], 0.0f) << "an unused row";
}

TEST(ZPsolaBayScalesTest, EditedNotesComeBackAndSavingThemTellsNobody)
{
    Bench bench;
    bench.SetDiscrete("scale", 2);
    bench.SetFlags("notesInScale", {0, 1, 10});
    bench.Tick();
    const std::string archive = archiveOf(*bench.bay);
    EXPECT_FALSE(bench.Element("customScaleTones").IsMarkedChanged());
    EXPECT_FALSE(bench.Element("currentScaleIndex").IsMarkedChanged());
    EXPECT_FALSE(bench.application.HasMessages());
    Bench other;
    other.Restore(archive);
    other.Tick();
    EXPECT_EQ(other.Flags("notesInScale"), (Degrees{0, 1, 10}));
    EXPECT_EQ(other.Element("currentScaleModified").GetDiscrete(), 1);
    EXPECT_EQ(other.Element("scale").GetDiscrete(), 2);
}

TEST(ZPsolaBayScalesTest,
     ALoadWithFewerNamesLeavesNoScaleWithoutANameAndOneWithNamesOnlyKeepsItsNumber)
{
    Bench bench;
    bench.Add(3);
    bench.SetDiscrete("scale", 6);
    const std::string archive = archiveOf(*Bench().bay);
    bench.Restore(archive);
    EXPECT_EQ(bench.Element("scale").CountDiscreteValues(), 4);
    EXPECT_EQ(bench.Element("scale").GetDiscreteDefault(), 1);
    EXPECT_TRUE(archiveOf(*bench.bay) == archive);
    bench.Add(3);
    bench.SetDiscrete("scale", 6);
    bench.Element("CustomScaleNames")
        .RestoreBody(xmlOf("<element name=\"CustomScaleNames\" int32value=\"0\"></element>"));
    bench.application.ProcessQueue();
    EXPECT_EQ(bench.Element("scale").GetDiscrete(), 6);
}

TEST(ZPsolaBayScalesTest, TheListShowsANameAsItWillBeSaved)
{
    Bench bench;
    bench.bay->AddCustomScale(ZString("\"A\" <b> & c\u00E9\t"), Degrees{1});
    const auto shown = namesOf(bench.Element("scale"));
    EXPECT_EQ(shown[4], "'A' \u2039b\u203A & c\u00E9\t");
    Bench other;
    other.Restore(archiveOf(*bench.bay));
    EXPECT_EQ(namesOf(other.Element("scale")), shown);
}
