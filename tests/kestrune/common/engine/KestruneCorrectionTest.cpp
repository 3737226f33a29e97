// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneCorrection.h"

#include "kestrune/common/engine/FrequencyToNote.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace orvane
{

namespace
{

const std::vector<float> kMajor{2.0f, 4.0f, 5.0f, 7.0f, 9.0f, 11.0f};

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

}  // namespace

TEST(KestruneCorrectionTest, AVoiceGoesToTheNearestToneInEveryOctave)
{
    const struct
    {
        std::vector<float> tones;
        float voice;
        float move;
    } rows[] = {
        {kMajor, 4.3f, -0.3f},
        {kMajor, 6.2f, 0.8f},
        {kMajor, 11.7f, 0.3f},  // the root above
        {kMajor, 0.4f, -0.4f},
        {kMajor, 0.999f, -0.999f},  // between root and second
        {kMajor, 1.001f, 0.999f},
        {{}, 5.0f, -5.0f},
        {{}, 7.0f, 5.0f},
        {std::vector<float>(100, 3.0f), 2.9f, 0.1f},  // more than there is room for
    };
    for (const auto& row : rows) {
        auto correction = immediate(row.tones);
        correction.SetReferenceFrequency(-3.0f);  // is 440 Hz
        for (const float octave : {-36.0f, 0.0f, 24.0f})
            EXPECT_NEAR(moveOf(correction, octave + row.voice), row.move, 1e-3f) << row.voice;
    }
}

TEST(KestruneCorrectionTest, TiesGoToTheRootAndThenToTheLowerTone)
{
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
    auto correction = immediate(kMajor);
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
    const struct
    {
        float hz;
        std::array<int, 3> note;  // number, octave, degree
    } rows[] = {{16.35f, {0, 0, 0}},  {440.0f, {57, 4, 9}},  {261.6f, {48, 4, 0}},
                {258.0f, {48, 4, 0}}, {254.0f, {47, 3, 11}}, {15.5f, {-1, -1, 11}}};
    for (const auto& row : rows) {
        std::array<int, 3> found{};
        FrequencyToNote(row.hz, &found[0], &found[1], &found[2]);
        EXPECT_EQ(found, row.note) << row.hz;
        FrequencyToNote(row.hz, nullptr, nullptr, nullptr);
    }
}

}  // namespace orvane
