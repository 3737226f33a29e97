// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/FrequencyToNote.h"
#include "kestrune/common/engine/KestruneCorrection.h"
#include "kestrune/common/engine/KestruneScales.h"
#include "support/Test.h"
#include "zlib/common/buffers/ZBuffer.h"

using namespace orvane;

namespace
{

const std::vector<float> kMajorTones{2.0f, 4.0f, 5.0f, 7.0f, 9.0f, 11.0f};

KestruneCorrection immediate(const std::vector<float>& tones)
{
    KestruneCorrection correction;
    correction.SetTones(tones.data(), static_cast<int>(tones.size()));
    return correction;
}

/// Semitones by which a voice, so many semitones above A 440, is moved at once.
float moveOf(KestruneCorrection& correction, float semitones)
{
    return 12.0f * std::log2(correction.Advance(440.0f * std::exp2(semitones / 12.0f), 1.0f));
}

std::vector<float> listOf(const KestruneTones& tones)
{
    return {tones.values.begin(), tones.values.begin() + tones.count};
}

}  // namespace

TEST(KestruneCorrectionTest, AVoiceGoesToTheNearestToneInEveryOctaveAndTiesToTheRootAndTheLowerTone)
{
    const std::tuple<std::vector<float>, float, float> rows[] = {
        {kMajorTones, 4.3f, -0.3f},
        {kMajorTones, 6.2f, 0.8f},
        {kMajorTones, 11.7f, 0.3f},  // the root above
        {kMajorTones, 0.4f, -0.4f},
        {kMajorTones, 0.999f, -0.999f},  // between root and second
        {{}, 5.0f, -5.0f},
        {{}, 7.0f, 5.0f},
        {std::vector<float>(100, 3.0f), 2.9f, 0.1f},  // more than there is room for
    };
    for (const auto& [tones, voice, move] : rows) {
        auto correction = immediate(tones);
        correction.SetReferenceFrequency(-3.0f);  // is 440 Hz
        for (const float octave : {-36.0f, 0.0f, 24.0f})
            EXPECT_NEAR(moveOf(correction, octave + voice), move, 1e-3f) << voice;
    }
    // As the correction counts them, so that the distances are exactly the same.
    const float voice = 440.0f * std::exp2(3.0f / 12.0f);
    const float semitones = 12.0f * (std::log10(voice / 440.0f) / std::log10(2.0f));
    auto aboveRoot = immediate({2.0f * semitones});
    EXPECT_NEAR(moveOf(aboveRoot, 3.0f), -3.0f, 1e-3f);
    auto aroundVoice = immediate({semitones - 0.5f, semitones + 0.5f});
    EXPECT_NEAR(moveOf(aroundVoice, 3.0f), -0.5f, 1e-3f);
}

TEST(KestruneCorrectionTest, IgnoredNotesAreThoseOfTheVoiceNotOfTheTarget)
{
    ZBuffer ignored(12, "ZBuffer");
    auto correction = immediate(kMajorTones);
    correction.SetIgnoredNotes(&ignored);
    ignored.Data()[6] = 1.0f;
    EXPECT_NEAR(moveOf(correction, 6.2f), 0.0f, 1e-6f);
    EXPECT_NEAR(moveOf(correction, 6.6f), 0.4f, 1e-3f) << "the nearest degree is 7";
    ignored.Data()[0] = 1.0f;
    EXPECT_NEAR(moveOf(correction, 11.7f), 0.0f, 1e-6f) << "wraps to the root's flag";
    ignored.Data()[0] = 0.5f;  // only exactly 1 is set
    EXPECT_NEAR(moveOf(correction, 11.7f), 0.3f, 1e-3f);
}

TEST(FrequencyToNoteTest, NamesTheNearestNoteAndItsOctave)
{
    using Note = std::array<int, 3>;  // number, octave, degree
    for (const auto& [hz, note] : {std::pair{16.35f, Note{0, 0, 0}},
                                   {440.0f, Note{57, 4, 9}},
                                   {258.0f, Note{48, 4, 0}},
                                   {254.0f, Note{47, 3, 11}},
                                   {15.5f, Note{-1, -1, 11}}})
    {
        Note found{};
        FrequencyToNote(hz, &found[0], &found[1], &found[2]);
        EXPECT_EQ(found, note) << hz;
    }
}

TEST(KestruneScalesTest, TonesAreTheDegreesMovedByTheirIntonationAndRise)
{
    constexpr int kMajor = 1;
    constexpr int kClassicJust = 1;
    EXPECT_EQ(listOf(tonesOf(kMajor, kClassicJust)),
              (std::vector<float>{2.04f, 3.86f, 4.98f, 7.02f, 8.84f, 10.88f}));
    EXPECT_FLOAT_EQ(tonesOf(kMajor, /*Carlos alpha*/ 7).values[5], 8.58f);
    const std::vector<std::int32_t> withRoot{0, 6};
    EXPECT_EQ(listOf(tonesOf(withRoot, kClassicJust)), (std::vector<float>{0.0f, 5.9f}));
    for (const int unknown : {-1, 10, 1000}) {
        EXPECT_EQ(tonesOf(unknown, unknown), tonesOf(0, 0));
        EXPECT_EQ(sourceRange(unknown), sourceRange(0));
    }
    // The engine gives a tie to the lower tone by taking the first, which needs rising lists.
    for (int scale = 0; scale < static_cast<int>(kBuiltInScaleNames.size()); ++scale)
        for (int row = 0; row < static_cast<int>(kIntonationNames.size()); ++row)
            EXPECT_TRUE(std::ranges::is_sorted(listOf(tonesOf(scale, row))))
                << scale << ", " << row;
}
