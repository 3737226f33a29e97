// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/PsolaClass.h"

#include "EngineRun.h"
#include "PlainPsola.h"
#include "support/Measure.h"
#include "support/Signals.h"
#include "support/Test.h"
#include "tools/singer/Singer.h"
#include "zlib/common/objects/ZException.h"

#include <new>

// Memory aligned beyond the default is what sample buffers ask for.
static int alignedAllocationsLeft = std::numeric_limits<int>::max();

void* operator new(std::size_t bytes, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
    const auto step = static_cast<std::size_t>(alignment);
    const std::size_t padded = (bytes + step - 1) / step * step;
    return alignedAllocationsLeft-- > 0 ? std::aligned_alloc(step, padded) : nullptr;
}

void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept
{
    std::free(memory);
}

namespace orvane
{

namespace
{

constexpr int kLatency = 18359;
constexpr KestruneTracking kTrackings[] = {KestruneTracking::kClassic, KestruneTracking::kFine};

/// An engine that hears both channels and shifts by octaves.
std::unique_ptr<PsolaClass> engineAt(float rate, float minHz = 73.0f, float maxHz = 1318.0f,
                                     float pitch = 0.0f, float formant = 0.0f,
                                     KestruneTracking tracking = KestruneTracking::kClassic)
{
    auto engine = std::make_unique<PsolaClass>();
    engine->SetTracking(tracking);
    EXPECT_TRUE(engine->Initialize(rate, hopAt(rate)));
    engine->SetFrequencyRange(minHz, maxHz);
    engine->SetPitchReference(2);
    engine->SetTransposeEnabled(true);
    engine->SetPitchShift(pitch);
    engine->SetFormantShift(formant);
    return engine;
}

void correct(PsolaClass& engine)
{
    engine.SetScaleTones(kChromatic.data(), static_cast<int>(kChromatic.size()));
    engine.SetCorrectionTime(50.0f);
    engine.SetCorrectionEnabled(true);
}

/// A tone that glides through a range, staying at both ends, and fades in and out; then a noise,
/// and silence.
std::vector<float> glide(float rate, float fromHz, float toHz)
{
    const int length = static_cast<int>(2.0f * rate);
    auto sound = whiteNoise(0.005f, length + length / 4, 11);
    double phase = 0.0;
    for (int i = 0; i < length; ++i) {
        const double place = static_cast<double>(i) / length;
        const double way = std::clamp(1.25 * place - 0.125, 0.0, 1.0);
        phase += fromHz * std::pow(static_cast<double>(toHz) / fromHz, way) / rate;
        double sum = 0.0;
        for (int h = 1; h <= 12; ++h)
            sum += std::sin(2.0 * std::numbers::pi * std::fmod(h * phase, 1.0)) / h;
        const double level = std::pow(std::cos(4.0 * std::numbers::pi * place), 4.0);
        sound[static_cast<std::size_t>(i)] *= 0.01f;
        sound[static_cast<std::size_t>(i)] += static_cast<float>(0.01 * level * sum);
    }
    sound.resize(sound.size() + static_cast<std::size_t>(length / 4));
    return sound;
}

}  // namespace

TEST(PsolaClassTest, CorrectionBringsAVoiceOntoTheNearestToneOfTheScale)
{
    for (const double cents : {-45.0, 20.0, 40.0}) {
        auto engine = engineAt(kRate);
        correct(*engine);
        const auto voice = steadyVowel(Vowel::kA, 220.0 * std::exp2(cents / 1200.0), kRate, 2.5);
        const auto output = runEngine(*engine, kHop, voice);
        const auto settled = std::span(output).last(static_cast<std::size_t>(kRate) / 2);
        EXPECT_NEAR(centsBetween(measurePitch(settled, kRate, 220.0), 220.0), 0.0, 5.0);
        EXPECT_NEAR(engine->GetCorrectionCents(), -cents, 5.0);
        engine->SetCorrectionEnabled(false);
        EXPECT_EQ(engine->GetCorrectionCents(), 0.0f);
    }
}

TEST(PsolaClassTest, BothChannelsShareMarksAndGrainsAndMayBeChangedInPlace)
{
    for (const auto tracking : kTrackings) {
        auto left = steadyVowel(Vowel::kA, 200.0, kRate, 1.5);
        auto right = left;
        std::ranges::transform(left, right.begin(), [](float sample) { return -0.5f * sample; });
        auto apart = engineAt(kRate, 73.0f, 1318.0f, 0.3f, 0.0f, tracking);
        auto inPlace = engineAt(kRate, 73.0f, 1318.0f, 0.3f, 0.0f, tracking);
        const auto expected = runEngine(*apart, kHop, Stereo{left, right})[0];
        for (std::size_t at = 0; at + kHop <= left.size(); at += kHop) {
            float* const channels[] = {left.data() + at, right.data() + at};
            inPlace->Process(channels, channels, kHop);
        }
        for (std::size_t i = 0; i < left.size() / kHop * kHop; ++i) {
            ASSERT_EQ(left[i], expected[i]) << i;
            ASSERT_EQ(right[i], -0.5f * expected[i]) << i;
        }
    }
}

TEST(PsolaClassTest, TheReferenceNamesTheChannelThatIsHeard)
{
    const auto tone = harmonicTone(220.0, kRate, 44100);
    const auto other = harmonicTone(330.0, kRate, 44100);
    const std::vector<float> silence(tone.size());
    const std::vector<std::pair<std::int16_t, Stereo>> rows{
        {0, {tone, other}}, {1, {other, tone}}, {2, {silence, tone}}, {7, {tone, silence}}};
    for (const auto tracking : kTrackings)
        for (const auto& [reference, input] : rows) {
            auto engine = engineAt(kRate, 73.0f, 1318.0f, 0.0f, 0.0f, tracking);
            engine->SetPitchReference(reference);
            runEngine(*engine, kHop, input);
            EXPECT_NEAR(centsBetween(engine->GetInputPitch(), 220.0), 0.0, 5.0) << reference;
        }
}

TEST(PsolaClassTest, OutputIsThatOfThePlainForm)
{
    std::vector<float> song = renderSong(demoSong(), kRate);
    song.resize(8 * 44100);
    const std::tuple<float, float, float, bool, float, float> rows[] = {
        {44100, 73, 1318, true, 0, 0},         {44100, 73, 1318, true, -0.4f, -1},
        {44100, 73, 1318, false, 0.75f, 0.5f}, {48000, 73, 494, false, -1, 0.3f},
        {44100, 165, 1318, true, 0, 1},        {96000, 20, 330, true, 0.5f, -0.2f},
        {8000, 330, 1500, true, 0, 0},         {44100, 20, 1500, true, -0.2f, 0}};
    for (const auto& [rate, minHz, maxHz, corrects, pitch, formant] : rows) {
        SCOPED_TRACE(testing::Message() << minHz << " Hz at " << rate << " by " << pitch);
        const int hop = hopAt(rate);
        auto engine = engineAt(rate, minHz, maxHz, pitch, formant);
        PlainPsola plain(rate, hop, minHz, maxHz);
        plain.SetShifts(pitch, formant);
        if (corrects) {
            correct(*engine);
            engine->SetReferenceFrequency(530.0f);
            plain.SetCorrection(530.0f, kChromatic, 0.05f);
        }
        const bool sings = rate == kRate && minHz == 73.0f;
        const auto sound = sings ? song : glide(rate, maxHz, minHz);
        const auto output = runEngine(*engine, hop, sound);
        for (auto at = sound.begin(); sound.end() - at >= hop; at += hop) {
            const auto block = plain.Process({at, at + hop});
            for (int i = 0; i < hop; ++i)
                ASSERT_NEAR(output[static_cast<std::size_t>(at - sound.begin() + i)],
                            block[static_cast<std::size_t>(i)], 1e-5f);
        }
    }
}

/// Output of an engine whose settings change between blocks. catchUp(engine, block) is called after
/// every block, before the changes.
template <class CatchUp>
std::vector<float> outputOfChanges(const std::vector<float>& sound, CatchUp catchUp)
{
    auto engine = engineAt(kRate);
    correct(*engine);
    std::vector<float> output(sound.size());
    std::mt19937 random(5);
    int block = 0;
    for (std::size_t at = 0; at + kHop <= sound.size(); at += kHop, ++block) {
        const float* const inputs[] = {sound.data() + at, sound.data() + at};
        float* const outputs[] = {output.data() + at, output.data() + at};
        engine->Process(inputs, outputs, kHop);
        catchUp(*engine, block);
        const auto shift = [&](float pitch, float formants) {
            engine->SetPitchShift(pitch);
            engine->SetFormantShift(formants);
        };
        const std::function<void()> changes[] = {
            [&] { engine->SetFrequencyRange(20.0f, 330.0f); },  // its records come latest
            [&] { engine->SetFrequencyRange(165.0f, 1318.0f); },
            [&] { shift(-1.0f, -1.0f); },
            [&] { shift(0.3f, 0.0f); },
            [&] { engine->SetTracking(kTrackings[random() % 2]); },
            [&] { engine->SetPitchReference(static_cast<std::int16_t>(random() % 3)); },
            [&] {
                if (random() % 4 == 0)
                    engine->Reset();
            }};
        if (const auto which = random() % 40; which < std::size(changes))
            changes[which]();
    }
    return output;
}

TEST(PsolaClassTest, OutputIsTheSameWheneverTheWorkOfABlockIsDone)
{
    std::vector<float> sound = renderSong(demoSong(), static_cast<double>(kRate));
    const auto low = harmonicTone(31.0, kRate, 2 * static_cast<int>(kRate));
    sound.insert(sound.end(), low.begin(), low.end());
    const auto expected = outputOfChanges(sound, [](PsolaClass&, int) {});
    EXPECT_GT(largestOf(expected), 0.1f);
    std::mt19937 random(9);
    EXPECT_EQ(outputOfChanges(sound,
                              [&](PsolaClass& engine, int block) {
                                  if (block % 16 < 8)
                                      return engine.CatchUp(1.0f);
                                  float share = 0.0f;
                                  while (share < 1.0f && random() % 8 != 0) {
                                      engine.CatchUp(share);
                                      share += static_cast<float>(random() % 100) * 0.003f;
                                  }
                              }),
              expected);
}

TEST(PsolaClassTest, AChangeOfTrackingIsNotHeardBeforeItHappens)
{
    constexpr auto kBlock = static_cast<std::size_t>(kHop);
    constexpr std::size_t kChange = 60;
    // A voice so low needs the newest records.
    const auto sound = harmonicTone(31.0, kRate, 200 * kHop);
    using Choices = std::map<std::size_t, KestruneTracking>;
    for (const float lowest : {20.0f, 73.0f}) {
        const auto play = [&](const Choices& choices) {
            auto engine = engineAt(kRate, lowest, 1318.0f, -0.3f);
            correct(*engine);
            std::vector<float> output(sound.size());
            for (std::size_t block = 0; (block + 1) * kBlock <= sound.size(); ++block) {
                if (const auto choice = choices.find(block); choice != choices.end())
                    engine->SetTracking(choice->second);
                const float* const in = sound.data() + block * kBlock;
                float* const out = output.data() + block * kBlock;
                engine->Process(std::array{in, in}.data(), std::array{out, out}.data(), kHop);
            }
            return output;
        };
        const auto expected = play({});
        EXPECT_EQ(play({{kChange, KestruneTracking::kFine},
                        {kChange + 18, KestruneTracking::kClassic},
                        {kChange + 22, KestruneTracking::kFine},
                        {kChange + 40, KestruneTracking::kClassic}}),
                  expected);
        const auto changed = play({{kChange, KestruneTracking::kFine}});
        const auto first = std::mismatch(changed.begin(), changed.end(), expected.begin()).first;
        EXPECT_GE(first - changed.begin(), (kChange + 18) * kHop) << "of the 19th block, or later";
        EXPECT_LT(first - changed.begin(), (kChange + 80) * kHop);
    }
}

TEST(PsolaClassTest, AnySoundGivesFiniteOutputAtEveryRate)
{
    for (const float rate : {8000.0f, 44100.0f, 384000.0f}) {
        SCOPED_TRACE(rate);
        auto engine = engineAt(rate);
        engine->SetCorrectionEnabled(true);
        engine->SetCorrectionTime(0.0f);
        const int length = static_cast<int>(rate) / 2;
        for (const float octaves : {-1.0f, 1.0f}) {
            engine->SetPitchShift(octaves);
            engine->SetFormantShift(-octaves);
            for (const auto& sound :
                 {harmonicTone(311.0, rate, length), whiteNoise(1.0f, length, 3),
                  std::vector<float>(static_cast<std::size_t>(length), 1.0e-40f)})
                EXPECT_LT(largestOf(runEngine(*engine, hopAt(rate), sound)), 9.0f);
        }
    }
}

TEST(PsolaClassTest, OneBadBlockNeitherReachesTheOutputNorEndsDetection)
{
    for (const auto tracking : kTrackings)
        for (const float bad : {std::nanf(""), std::numeric_limits<float>::infinity(), 1.0e35f}) {
            auto engine = engineAt(kRate, 73.0f, 1318.0f, 0.0f, 0.0f, tracking);
            auto voice = steadyVowel(Vowel::kA, 220.0, kRate, 2.0);
            std::fill_n(voice.begin() + 22050, 700, bad);
            const auto output = runEngine(*engine, kHop, voice);
            EXPECT_LT(largestOf(output), 4.0f);
            EXPECT_NEAR(centsBetween(engine->GetInputPitch(), 220.0), 0.0, 6.0);
        }
}

TEST(PsolaClassTest, AChangeOfRateOrBlockStartsAfresh)
{
    auto engine = engineAt(kRate);
    EXPECT_EQ(engine->GetLatency(), kLatency);
    EXPECT_TRUE(engine->SetSampleRate(kRate));
    ASSERT_TRUE(engine->SetSampleRate(48000.0f));
    ASSERT_TRUE(engine->SetBlockSize(557));
    EXPECT_EQ(engine->GetLatency(), 19979);
    runEngine(*engine, 557, harmonicTone(80.0, 48000.0, 48000));
    EXPECT_NEAR(centsBetween(engine->GetInputPitch(), 80.0), 0.0, 12.0) << "the range stays";
    engine->SetFrequencyRange(330.0f, 1500.0f);
    runEngine(*engine, 557, harmonicTone(660.0, 48000.0, 48000));
    EXPECT_NEAR(centsBetween(engine->GetInputPitch(), 660.0), 0.0, 6.0);
    EXPECT_FALSE(engine->SetBlockSize(0));
    EXPECT_FALSE(engine->SetBlockSize(100000));
    EXPECT_FALSE(engine->SetSampleRate(100.0f));
    EXPECT_EQ(engine->GetLatency(), 0);
    ASSERT_TRUE(engine->Initialize(kRate, kHop));
    EXPECT_EQ(engine->GetLatency(), kLatency);
}

TEST(PsolaClassTest, ABufferThatCannotBeMadeMakesInitializeFail)
{
    PsolaClass engine;
    int refusals = 0;
    bool isReady = false;
    for (int allocations = 0; !isReady && allocations < 100; ++allocations) {
        alignedAllocationsLeft = allocations;
        try {
            isReady = engine.Initialize(kRate, kHop);
            refusals += isReady ? 0 : 1;
        } catch (const ZException&) {
            // What the factories of the transform and the gain throw is passed on.
        }
    }
    alignedAllocationsLeft = std::numeric_limits<int>::max();
    EXPECT_TRUE(isReady);
    EXPECT_EQ(refusals, 11) << "the thinned frame, both halves of its four spectra, and their sum";
}

}  // namespace orvane
