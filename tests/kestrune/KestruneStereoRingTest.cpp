#include "kestrune/common/KestruneStereoRing.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace orvane
{

namespace
{

KestruneStereoRing ringOf(int length)
{
    KestruneStereoRing ring;
    ring.Allocate(length);
    return ring;
}

}  // namespace

TEST(KestruneStereoRingTest, RunsCrossTheEndInBothDirections)
{
    auto ring = ringOf(8);
    const std::array<float, 5> left{1, 2, 3, 4, 5};
    const std::array<float, 5> right{-1, -2, -3, -4, -5};
    const float* const inputs[] = {left.data(), right.data()};
    ring.Write(inputs, 6, 5);
    EXPECT_EQ(ring.Channel(0)[7], 2.0f);
    EXPECT_EQ(ring.Channel(0)[0], 3.0f);

    std::array<float, 5> sum{10, 10, 10, 10, 10};
    ring.ReadAdd(1, 6, 5, sum.data());
    EXPECT_EQ(sum, (std::array<float, 5>{9, 8, 7, 6, 5}));
    ring.Add(0, 7, 3, left.data());

    std::array<float, 5> takenLeft{};
    std::array<float, 5> takenRight{};
    float* const outputs[] = {takenLeft.data(), takenRight.data()};
    ring.Take(outputs, 6, 5);
    EXPECT_EQ(takenLeft, (std::array<float, 5>{1, 3, 5, 7, 5}));
    EXPECT_EQ(takenRight, right);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(ring.Channel(0)[i], 0.0f) << "a sum that was taken starts again";
}

TEST(KestruneStereoRingTest, PositionsMayBeNegativeOrBeyondManyTurns)
{
    const auto ring = ringOf(10);
    EXPECT_EQ(ring.Index(-3), 7);
    EXPECT_EQ(ring.Index(10), 0);
    EXPECT_EQ(ring.Index(123456789012LL), 2);
}

TEST(KestruneStereoRingTest, SamplesThatAreNoSoundBecomeSilence)
{
    auto ring = ringOf(6);
    const float infinity = std::numeric_limits<float>::infinity();
    const std::array<float, 6> bad{std::nanf(""), infinity, -infinity, 1.0e30f, 0.5f, -2.0f};
    const float* const inputs[] = {bad.data(), bad.data()};
    ring.Write(inputs, 0, 6);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(ring.Channel(1)[i], 0.0f);
    EXPECT_EQ(ring.Channel(1)[4], 0.5f);
    EXPECT_EQ(ring.Channel(1)[5], -2.0f);
}

}  // namespace orvane
