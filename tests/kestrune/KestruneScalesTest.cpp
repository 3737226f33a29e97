#include "kestrune/common/KestruneScales.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace orvane
{

namespace
{

std::vector<float> listOf(const KestruneTones& tones)
{
    return {tones.values.begin(), tones.values.begin() + tones.count};
}

constexpr int kChromatic = 0;
constexpr int kMajor = 1;
constexpr int kEqual = 0;
constexpr int kClassicJust = 1;
constexpr int kCarlosAlpha = 7;

}  // namespace

TEST(KestruneScalesTest, ToneIsTheDegreeMovedByItsIntonation)
{
    EXPECT_EQ(listOf(tonesOf(kMajor, kEqual)), (std::vector<float>{2, 4, 5, 7, 9, 11}));
    EXPECT_EQ(listOf(tonesOf(kMajor, kClassicJust)),
              (std::vector<float>{2.04f, 3.86f, 4.98f, 7.02f, 8.84f, 10.88f}));
    EXPECT_FLOAT_EQ(tonesOf(kMajor, kCarlosAlpha).values[5], 8.58f);
}

TEST(KestruneScalesTest, TonesOfACustomScaleKeepItsRoot)
{
    const std::vector<std::int32_t> degrees{0, 6};
    EXPECT_EQ(listOf(tonesOf(degrees, kClassicJust)), (std::vector<float>{0.0f, 5.9f}));
    EXPECT_TRUE(listOf(tonesOf(std::span<const std::int32_t>(), kEqual)).empty());
}

// The engine gives a tie to the lower tone by taking the first, which needs rising lists.
TEST(KestruneScalesTest, TonesRiseInEveryScaleAndIntonation)
{
    for (int scale = 0; scale < static_cast<int>(kBuiltInScaleNames.size()); ++scale) {
        for (int intonation = 0; intonation < static_cast<int>(kIntonationNames.size());
             ++intonation) {
            const std::vector<float> tones = listOf(tonesOf(scale, intonation));
            EXPECT_TRUE(std::is_sorted(tones.begin(), tones.end())) << scale << ", " << intonation;
            EXPECT_GT(tones.front(), 0.0f);
            EXPECT_LT(tones.back(), 12.0f);
        }
    }
}

TEST(KestruneScalesTest, IndexOutOfRangeFallsBackToTheFirst)
{
    for (const int index : {-1, 10, 1000}) {
        EXPECT_EQ(listOf(tonesOf(index, index)), listOf(tonesOf(kChromatic, kEqual)));
        EXPECT_EQ(sourceRange(index).lowHz, 73.0f);
        EXPECT_EQ(sourceRange(index).highHz, 1318.0f);
    }
    EXPECT_EQ(sourceRange(3).lowHz, 20.0f);
}

TEST(KestruneScalesTest, ReferenceIsTheRootAboveConcertPitch)
{
    EXPECT_EQ(referenceFrequency(0, 0.0f), 440.0f);
    EXPECT_NEAR(referenceFrequency(3, 0.0f), 523.2511f, 1e-3f);    // C5
    EXPECT_NEAR(referenceFrequency(11, 50.0f), 854.9481f, 1e-3f);  // half a semitone above G#5
}

}  // namespace orvane
