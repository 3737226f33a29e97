#include "kestrune/common/KestruneCorrection.h"
#include "kestrune/common/FrequencyToNote.h"
#include "zlib/common/ZBuffer.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace orvane
{

namespace
{

float semitonesAboveA(float semitones)
{
    return 440.0f * std::exp2(semitones / 12.0f);
}

/// Semitones by which a voice is moved at once, from the root A.
float moveOf(KestruneCorrection& correction, float semitones, float hold = 1.0f)
{
    return 12.0f * std::log2(correction.Advance(semitonesAboveA(semitones), hold));
}

KestruneCorrection immediate(const std::vector<float>& tones)
{
    KestruneCorrection correction;
    correction.SetTones(tones.data(), static_cast<int>(tones.size()));
    return correction;
}

const std::vector<float> kMajor{2.0f, 4.0f, 5.0f, 7.0f, 9.0f, 11.0f};

}  // namespace

TEST(KestruneCorrectionTest, SmoothingLeavesAQuarterAfterTheCorrectionTime)
{
    struct Row
    {
        float ms;
        float smoothing;
    };
    for (const Row& row : {Row{0.0f, 0.0f}, Row{10.0f, 0.2f}, Row{50.0f, 0.7248f},
                           Row{100.0f, 0.8513f}, Row{215.0f, 0.9279f}, Row{400.0f, 0.9606f}})
    {
        KestruneCorrection correction;
        correction.SetGlide(row.ms * 0.001f, 44100.0f, 512);
        EXPECT_NEAR(correction.Smoothing(), row.smoothing, 5e-5f) << row.ms << " ms";
    }
}

TEST(KestruneCorrectionTest, AVoiceGoesToTheNearestToneInEveryOctave)
{
    auto correction = immediate(kMajor);
    for (const float octave : {-36.0f, -12.0f, 0.0f, 24.0f}) {
        EXPECT_NEAR(moveOf(correction, octave + 4.3f), -0.3f, 1e-3f);
        EXPECT_NEAR(moveOf(correction, octave + 6.2f), 0.8f, 1e-3f);
        EXPECT_NEAR(moveOf(correction, octave + 11.7f), 0.3f, 1e-3f);  // the root above
        EXPECT_NEAR(moveOf(correction, octave + 0.4f), -0.4f, 1e-3f);
    }
}

TEST(KestruneCorrectionTest, TiesGoToTheRootAndThenToTheLowerTone)
{
    // 0 semitones is exact, and so are distances of whole numbers from it.
    auto tied = immediate({0.0f, 12.0f});
    EXPECT_EQ(tied.Advance(440.0f, 1.0f), 1.0f);
    auto lower = immediate({-1.0f, 1.0f});
    EXPECT_EQ(lower.Advance(440.0f, 1.0f), 1.0f);
    auto halfway = immediate(kMajor);
    EXPECT_LT(moveOf(halfway, 0.999f), 0.0f);
    EXPECT_GT(moveOf(halfway, 1.001f), 0.0f);
}

TEST(KestruneCorrectionTest, AnEmptyScaleLeavesTheRootAsTheOnlyTarget)
{
    auto correction = immediate({});
    EXPECT_NEAR(moveOf(correction, 5.0f), -5.0f, 1e-3f);
    EXPECT_NEAR(moveOf(correction, 7.0f), 5.0f, 1e-3f);
}

TEST(KestruneCorrectionTest, IgnoredNotesAreThoseOfTheVoiceNotOfTheTarget)
{
    ZBuffer ignored(12, "ZBuffer");
    auto correction = immediate(kMajor);
    correction.SetIgnoredNotes(&ignored);
    ignored.Data()[6] = 1.0f;
    EXPECT_NEAR(moveOf(correction, 6.2f), 0.0f, 1e-6f);
    EXPECT_NEAR(moveOf(correction, 6.6f), 0.4f,
                1e-3f);  // nearest degree is 7, which is not ignored
    ignored.Data()[0] = 1.0f;
    EXPECT_NEAR(moveOf(correction, 11.7f), 0.0f, 1e-6f);  // wraps to the root's flag
    ignored.Data()[0] = 0.5f;                             // only exactly 1 is set
    EXPECT_NEAR(moveOf(correction, 11.7f), 0.3f, 1e-3f);
}

TEST(KestruneCorrectionTest, WithoutVoiceTheRatioGlidesBackToOne)
{
    auto correction = immediate(kMajor);
    correction.SetGlide(0.010f, 44100.0f, 512);
    for (int i = 0; i < 20; ++i)
        correction.Advance(semitonesAboveA(4.4f), 1.0f);
    const float corrected = correction.Ratio();
    EXPECT_NEAR(12.0f * std::log2(corrected), -0.4f, 1e-3f);
    const float next = correction.Advance(semitonesAboveA(4.4f), 0.0f);
    EXPECT_NEAR(next - 1.0f, correction.Smoothing() * (corrected - 1.0f), 1e-6f);
    correction.Restart();
    EXPECT_EQ(correction.Ratio(), 1.0f);
}

TEST(KestruneCorrectionTest, OnlyThePitchClassOfTheReferenceMatters)
{
    auto correction = immediate(kMajor);
    for (const float reference : {110.0f, 440.0f, 1760.0f, -3.0f}) {
        correction.SetReferenceFrequency(reference);
        EXPECT_NEAR(moveOf(correction, 2.25f), -0.25f, 1e-3f) << reference;
    }
    correction.SetReferenceFrequency(440.0f * std::exp2(0.5f / 12.0f));  // detuned by 50 cents
    EXPECT_NEAR(moveOf(correction, 4.6f), -0.1f, 1e-3f);
}

TEST(KestruneCorrectionTest, TonesBeyondTheTableAreDropped)
{
    const std::vector<float> tones(100, 3.0f);
    auto correction = immediate(tones);
    EXPECT_NEAR(moveOf(correction, 2.9f), 0.1f, 1e-3f);
    correction.SetTones(tones.data(), -5);
    EXPECT_NEAR(moveOf(correction, 2.9f), -2.9f, 1e-3f);
}

TEST(FrequencyToNoteTest, NamesTheNearestNoteAndItsOctave)
{
    struct Row
    {
        float hz;
        int number;
        int octave;
        int degree;
    };
    for (const Row& row : {Row{16.35f, 0, 0, 0}, Row{440.0f, 57, 4, 9}, Row{261.6f, 48, 4, 0},
                           Row{258.0f, 48, 4, 0}, Row{254.0f, 47, 3, 11}, Row{15.5f, -1, -1, 11}})
    {
        SCOPED_TRACE(row.hz);
        int number = 0;
        int octave = 0;
        int degree = 0;
        FrequencyToNote(row.hz, &number, &octave, &degree);
        EXPECT_EQ(number, row.number);
        EXPECT_EQ(octave, row.octave);
        EXPECT_EQ(degree, row.degree);
        FrequencyToNote(row.hz, nullptr, nullptr, nullptr);
    }
}

}  // namespace orvane
