// SPDX-License-Identifier: GPL-3.0-or-later
#include "EngineRun.h"
#include "support/Measure.h"
#include "support/RealtimeGuard.h"
#include "support/Signals.h"
#include "support/Test.h"
#include "tools/singer/Singer.h"

using namespace orvane;

namespace
{

std::unique_ptr<PsolaClass> trackingEngine(float rate,
                                           KestruneTracking tracking = KestruneTracking::kFine)
{
    auto engine = std::make_unique<PsolaClass>();
    engine->SetTracking(tracking);
    EXPECT_TRUE(engine->Initialize(rate, hopAt(rate)));
    engine->SetFrequencyRange(73.0f, 1318.0f);
    engine->SetScaleTones(kChromatic.data(), static_cast<int>(kChromatic.size()));
    engine->SetCorrectionTime(0.0f);
    return engine;
}

/// The output, aligned with the sound and as long.
std::vector<float> aligned(PsolaClass& engine, const std::vector<float>& sound, int hop = kHop)
{
    std::vector<float> longer(sound.size() + static_cast<std::size_t>(engine.GetLatency() + hop));
    std::copy(sound.begin(), sound.end(), longer.begin());
    const std::vector<float> out = runEngine(engine, hop, longer);
    const auto first = out.begin() + engine.GetLatency();
    return {first, first + static_cast<std::ptrdiff_t>(sound.size())};
}

/// Harmonics of a pitch that is given at each time, in Hz.
template <typename Pitch>
std::vector<float> harmonics(float rate, double seconds, const Pitch& pitchAt)
{
    std::vector<float> sound(static_cast<std::size_t>(seconds * static_cast<double>(rate)));
    double phase = 0.0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double hz = pitchAt(static_cast<double>(i) / static_cast<double>(rate));
        phase += hz / static_cast<double>(rate);
        double sum = 0.0;
        for (int h = 1; h <= 20 && h * hz < 0.4 * static_cast<double>(rate); ++h)
            sum += std::sin(2.0 * std::numbers::pi * std::fmod(h * phase, 1.0)) / h;
        sound[i] = static_cast<float>(0.2 * sum);
    }
    return sound;
}

/// The most that stretches of a sound are off a pitch, in cents; from .. to in seconds.
double mostOff(const std::vector<float>& sound, float rate, double hz, double from, double to)
{
    double most = 0.0;
    const auto length = static_cast<std::size_t>(static_cast<double>(rate) * 0.04);
    for (double at = from; at < to; at += 0.02) {
        const auto first = static_cast<std::size_t>(at * static_cast<double>(rate));
        const double read = measurePitch(std::span(sound).subspan(first, length), rate, hz);
        most = std::max(most, std::fabs(centsBetween(read, hz)));
    }
    return most;
}

/// Processes a sound block by block with nothing on the audio thread that may wait, calling
/// before(block) first; returns the left output.
template <typename Before>
std::vector<float> runGuarded(PsolaClass& engine, int hop, const std::vector<float>& sound,
                              const Before& before)
{
    std::vector<float> out(sound.size());
    std::vector<float> other(static_cast<std::size_t>(hop));
    const RealtimeGuard guard;
    int block = 0;
    for (std::size_t at = 0; at + other.size() <= sound.size(); at += other.size(), ++block) {
        before(block);
        const float* const inputs[] = {sound.data() + at, sound.data() + at};
        float* const outputs[] = {out.data() + at, other.data()};
        engine.Process(inputs, outputs, hop);
    }
    EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    return out;
}

}  // namespace

TEST(FineTrackingTest, CorrectsWithinTwoCentsAtEveryRateAndInEachRange)
{
    // Rates, ranges, and semitones from A4.
    const std::tuple<float, float, float, double> cases[] = {
        {44100.0f, 82.0f, 554.0f, -24.0},  {44100.0f, 41.0f, 330.0f, -34.0},
        {44100.0f, 164.0f, 1109.0f, -5.0}, {44100.0f, 220.0f, 1318.0f, 7.0},
        {8000.0f, 73.0f, 1318.0f, -19.0},  {11025.0f, 73.0f, 1318.0f, -7.0},
        {16000.0f, 41.0f, 330.0f, -36.0},  {22050.0f, 73.0f, 1318.0f, -5.0},
        {32000.0f, 164.0f, 1109.0f, 0.0},  {88200.0f, 220.0f, 1318.0f, 14.0},
        {48000.0f, 73.0f, 1318.0f, -12.0}, {96000.0f, 41.0f, 330.0f, -30.0},
        {176400.0f, 82.0f, 554.0f, -26.0}, {192000.0f, 73.0f, 1318.0f, -14.0}};
    for (const auto& [rate, low, high, semitones] : cases) {
        SCOPED_TRACE(testing::Message() << rate << " Hz, " << semitones);
        const double hz = 440.0 * std::exp2(semitones / 12.0);
        const auto sound = harmonics(rate, 0.9, [&](double) { return hz * std::exp2(0.3 / 12.0); });
        auto engine = trackingEngine(rate);
        engine->SetFrequencyRange(low, high);
        engine->SetCorrectionEnabled(true);
        EXPECT_LT(mostOff(aligned(*engine, sound, hopAt(rate)), rate, hz, 0.5, 0.8), 2.0);
    }
}

TEST(FineTrackingTest, AHighVoiceWithAStrongOvertoneIsNotReadAnOctaveTooLow)
{
    // The period is no whole number of coarse samples, and the third harmonic is the loudest.
    auto voice = harmonicTone(880.0, kRate, 44100, 1000.0);
    const auto third = harmonicTone(2640.0, kRate, 44100, 3000.0);
    std::ranges::transform(voice, third, voice.begin(),
                           [](float a, float b) { return 0.4f * a + 0.8f * b; });
    auto engine = trackingEngine(kRate);
    runEngine(*engine, kHop, voice);
    EXPECT_NEAR(engine->GetInputPitch(), 880.0f, 0.5f);
}

TEST(FineTrackingTest, AVibratoStaysOnItsNoteAndAStepLeavesIt)
{
    const double note = 440.0 * std::exp2(-14.0 / 12.0);
    for (const double extent : {0.5, 1.0}) {
        SCOPED_TRACE(extent);
        const auto swing = [extent](double at) {
            return extent * std::sin(2.0 * std::numbers::pi * 5.5 * at);
        };
        auto engine = trackingEngine(kRate);
        engine->SetCorrectionEnabled(true);
        const auto sound = harmonics(kRate, 3.0, [&](double at) {
            return note * std::exp2((swing(at) + 0.2 + (at < 1.5 ? 0.0 : 1.0)) / 12.0);
        });
        const auto output = aligned(*engine, sound);
        EXPECT_LT(mostOff(output, kRate, note, 0.5, 1.35), 12.0 * extent);
        EXPECT_LT(mostOff(output, kRate, note * std::exp2(1.0 / 12.0), 1.65, 2.8), 12.0 * extent);
    }
}

TEST(FineTrackingTest, WhatIsNoVoiceOrNotShiftedComesOutAsItWentIn)
{
    auto engine = trackingEngine(kRate);
    engine->SetCorrectionEnabled(true);
    engine->SetTransposeEnabled(true);
    engine->SetPitchShift(0.5f);
    engine->SetFormantShift(-0.3f);
    std::vector<float> sound = whiteNoise(0.2f, 40000, 3);
    sound.resize(60000);  // silence
    sound[50000] = 1.0f;
    const auto output = aligned(*engine, sound);
    EXPECT_LT(errorDecibels(output, sound), -110.0);
    EXPECT_NEAR(output[50000], 1.0f, 1e-5f) << "a click is heard once, as loud";
    EXPECT_EQ(largestOf(std::span(output).subspan(52000)), 0.0f) << "silence is silence";
    auto unshifted = trackingEngine(kRate);
    unshifted->SetTransposeEnabled(true);
    const auto voice = steadyVowel(Vowel::kA, 150.0, kRate, 2.0);
    const auto same = aligned(*unshifted, voice);
    EXPECT_LT(errorDecibels(std::span(same).subspan(30000, 50000),
                            std::span(voice).subspan(30000, 50000)),
              -100.0);
}

TEST(FineTrackingTest, ABetterNoteAtTheOnsetComesFromWhatFollows)
{
    // The second note begins after a rest; its correction does not glide from the first one's.
    const double first = 440.0 * std::exp2(-12.3 / 12.0);
    const double second = 440.0 * std::exp2(-7.3 / 12.0);
    auto sound = harmonics(kRate, 2.0, [&](double at) { return at < 1.1 ? first : second; });
    std::fill(sound.begin() + static_cast<int>(0.9 * kRate),
              sound.begin() + static_cast<int>(1.1 * kRate), 0.0f);
    auto engine = trackingEngine(kRate);
    engine->SetCorrectionTime(400.0f);
    engine->SetCorrectionEnabled(true);
    EXPECT_LT(mostOff(aligned(*engine, sound), kRate, 440.0 * std::exp2(-7.0 / 12.0), 1.13, 1.3),
              2.0);
}

TEST(FineTrackingTest, IgnoredNotesAreLeftAsTheyAreSung)
{
    const double hz = 440.0 * std::exp2(-11.7 / 12.0);  // above the root A, 30 cents off
    ZBuffer ignored(12, "ZBuffer");
    ignored.Data()[0] = 1.0f;
    auto engine = trackingEngine(kRate);
    engine->SetIgnoredNotes(&ignored);
    engine->SetCorrectionEnabled(true);
    const auto sound = harmonics(kRate, 1.5, [hz](double) { return hz; });
    EXPECT_LT(mostOff(aligned(*engine, sound), kRate, hz, 0.5, 1.2), 0.5);
}

TEST(FineTrackingTest, AChangeInTheMiddleOfANoteIsFollowedWithoutAClickOrAGap)
{
    ZBuffer all(12, "ZBuffer");
    std::fill_n(all.Data(), 12, 1.0f);
    const struct
    {
        const char* name;
        void (*change)(PsolaClass&, ZBuffer&);
        double semitones;  // above A3 afterwards; the voice is 0.3 above
        KestruneTracking before = KestruneTracking::kFine;
    } rows[] = {
        {"range", [](PsolaClass& e, ZBuffer&) { e.SetFrequencyRange(164.0f, 1109.0f); }, 0.0},
        {"key", [](PsolaClass& e, ZBuffer&) { e.SetReferenceFrequency(453.0f); }, 0.504},
        {"scale", [](PsolaClass& e, ZBuffer&) { e.SetScaleTones(kChromatic.data() + 1, 10); }, 0.0},
        {"ignored", [](PsolaClass& e, ZBuffer& b) { e.SetIgnoredNotes(&b); }, 0.3},
        {"time", [](PsolaClass& e, ZBuffer&) { e.SetCorrectionTime(400.0f); }, 0.0},
        {"off", [](PsolaClass& e, ZBuffer&) { e.SetCorrectionEnabled(false); }, 0.3},
        {"shift", [](PsolaClass& e, ZBuffer&) { e.SetPitchShift(-0.25f); }, -3.0},
        {"formants", [](PsolaClass& e, ZBuffer&) { e.SetFormantShift(0.1f); }, 0.0},
        {"no transposition", [](PsolaClass& e, ZBuffer&) { e.SetTransposeEnabled(false); }, 0.0},
        {"channel", [](PsolaClass& e, ZBuffer&) { e.SetPitchReference(1); }, 0.0},
        {"to classic", [](PsolaClass& e, ZBuffer&) { e.SetTracking(KestruneTracking::kClassic); },
         0.0},
        {"to fine", [](PsolaClass& e, ZBuffer&) { e.SetTracking(KestruneTracking::kFine); }, 0.0,
         KestruneTracking::kClassic}};
    const auto voice = harmonicTone(220.0 * std::exp2(0.3 / 12.0), kRate, 240 * kHop, 2500.0);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        auto engine = trackingEngine(kRate, row.before);
        engine->SetCorrectionEnabled(true);
        engine->SetTransposeEnabled(true);
        const auto output = runGuarded(*engine, kHop, voice, [&](int block) {
            if (block == 100)
                row.change(*engine, all);
        });
        const auto around = std::span(output).subspan(95 * kHop, 75 * kHop);
        EXPECT_LT(clickDecibels(around, static_cast<double>(kRate)), -60.0);
        for (std::size_t at = 0; at + 1024 <= around.size(); at += 1024)
            EXPECT_GT(largestOf(around.subspan(at, 1024)), 0.4f * largestOf(voice)) << at;
        const double hz = 220.0 * std::exp2(row.semitones / 12.0);
        const double cents = engine->GetTracking() == KestruneTracking::kFine ? 1.0 : 5.0;
        EXPECT_LT(mostOff(output, kRate, hz, 2.1, 2.7), cents);
    }
}

TEST(FineTrackingTest, WhatIsNoSingleVoiceIsNoLouderAndClicksNoMoreThanWithClassic)
{
    const int length = 120 * kHop;
    std::vector<float> square(static_cast<std::size_t>(length));
    std::vector<float> drums = whiteNoise(0.9f, length, 9);
    std::vector<float> chord(square.size());
    for (const double hz : {220.0, 277.18, 329.63})
        std::ranges::transform(chord, harmonicTone(hz, kRate, length, 2500.0), chord.begin(),
                               std::plus<float>());
    for (std::size_t i = 0; i < square.size(); ++i) {
        square[i] = i / 200 % 2 == 0 ? 1.0f : -1.0f;
        drums[i] *= std::exp(static_cast<float>(i % 15000) / -900.0f);
    }
    for (const auto* const sound : {&square, &drums, &chord}) {
        SCOPED_TRACE(sound == &square ? "square" : sound == &drums ? "drums" : "chord");
        const auto outputOf = [&](KestruneTracking tracking) {
            auto engine = trackingEngine(kRate, tracking);
            engine->SetCorrectionEnabled(true);
            engine->SetTransposeEnabled(true);
            engine->SetPitchShift(0.25f);
            auto output = runEngine(*engine, kHop, *sound);
            output.erase(output.begin(), output.begin() + 45 * kHop);  // the sound's abrupt start
            return output;
        };
        const auto classic = outputOf(KestruneTracking::kClassic);
        const auto fine = outputOf(KestruneTracking::kFine);
        EXPECT_LT(largestOf(fine), 1.1f * std::max(largestOf(classic), largestOf(*sound)));
        if (sound == &chord) {
            EXPECT_LT(clickDecibels(fine, kRate), std::max(clickDecibels(classic, kRate), -60.0));
        }
    }
}

TEST(FineTrackingTest, AnySoundAndAnyChangeGiveFiniteOutputInTime)
{
    for (const float rate : {8000.0f, 44100.0f, 96000.0f, 192000.0f}) {
        SCOPED_TRACE(rate);
        const int hop = hopAt(rate);
        auto engine = trackingEngine(rate);
        engine->SetCorrectionEnabled(true);
        engine->SetTransposeEnabled(true);
        const auto length = static_cast<int>(rate) / 2;
        std::vector<float> sound = whiteNoise(1.0f, length, 7);
        sound.insert(sound.end(), static_cast<std::size_t>(length), 1e-40f);
        const auto gliding = harmonics(rate, 1.0, [](double at) { return 40.0 + 1500.0 * at; });
        sound.insert(sound.end(), gliding.begin(), gliding.end());
        sound[static_cast<std::size_t>(length) + 100] = std::numeric_limits<float>::quiet_NaN();
        sound[static_cast<std::size_t>(length) + 900] = std::numeric_limits<float>::infinity();
        const auto output = runGuarded(*engine, hop, sound, [&](int block) {
            const float step = static_cast<float>(block % 7) / 7.0f;
            engine->SetPitchShift(2.0f * step - 1.0f);
            engine->SetFormantShift(1.0f - 2.0f * step);
            engine->SetFrequencyRange(20.0f + 380.0f * step, 1500.0f - 1200.0f * step);
            engine->SetReferenceFrequency(100.0f + 1000.0f * step);
            engine->SetScaleTones(kChromatic.data(), block % 12);
            engine->SetCorrectionTime(400.0f * step);
            engine->SetPitchReference(static_cast<std::int16_t>(block % 3));
            if (block % 30 == 0)
                engine->SetTracking(block % 60 == 0 ? KestruneTracking::kClassic
                                                    : KestruneTracking::kFine);
            if (block % 97 == 96)
                engine->Reset();
        });
        EXPECT_LT(largestOf(output), 8.0f);
    }
}
