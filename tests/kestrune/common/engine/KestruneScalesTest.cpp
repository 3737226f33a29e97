// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneScales.h"

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

}  // namespace

TEST(KestruneScalesTest, ToneIsTheDegreeMovedByItsIntonation)
{
    constexpr int kMajor = 1;
    constexpr int kClassicJust = 1;
    constexpr int kCarlosAlpha = 7;
    EXPECT_EQ(listOf(tonesOf(kMajor, kClassicJust)),
              (std::vector<float>{2.04f, 3.86f, 4.98f, 7.02f, 8.84f, 10.88f}));
    EXPECT_FLOAT_EQ(tonesOf(kMajor, kCarlosAlpha).values[5], 8.58f);
    const std::vector<std::int32_t> withRoot{0, 6};
    EXPECT_EQ(listOf(tonesOf(withRoot, kClassicJust)), (std::vector<float>{0.0f, 5.9f}));
    for (const int unknown : {-1, 10, 1000}) {
        EXPECT_EQ(tonesOf(unknown, unknown), tonesOf(0, 0));
        EXPECT_EQ(sourceRange(unknown), sourceRange(0));
    }
}

// The engine gives a tie to the lower tone by taking the first, which needs rising lists.
TEST(KestruneScalesTest, TonesRiseInEveryScaleAndIntonation)
{
    for (int scale = 0; scale < static_cast<int>(kBuiltInScaleNames.size()); ++scale) {
        for (int row = 0; row < static_cast<int>(kIntonationNames.size()); ++row) {
            const std::vector<float> tones = listOf(tonesOf(scale, row));
            EXPECT_TRUE(std::is_sorted(tones.begin(), tones.end())) << scale << ", " << row;
            EXPECT_GT(tones.front(), 0.0f);
            EXPECT_LT(tones.back(), 12.0f);
        }
    }
}

}  // namespace orvane
