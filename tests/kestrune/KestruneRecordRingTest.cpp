#include "kestrune/common/KestruneRecordRing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace orvane
{

namespace
{

constexpr double kHop = 512.0;

struct Frame
{
    float period;
    float voicing;
};

/// Feeds frames one hop apart, with the repair after each, and stops before the last advance.
KestruneRecordRing ringOf(const std::vector<Frame>& frames, int capacity = 37)
{
    KestruneRecordRing ring;
    ring.Allocate(capacity);
    ring.Fill(300.0f);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (i > 0)
            ring.Advance();
        ring.Write({static_cast<double>(i) * kHop, frames[i].period, frames[i].voicing,
                    frames[i].voicing});
        ring.Repair();
    }
    return ring;
}

}  // namespace

TEST(KestruneRecordRingTest, OneFrameAnOctaveOffIsReplacedWhenItIsFourBlocksOld)
{
    for (const float wrong : {100.0f, 400.0f}) {
        std::vector<Frame> frames(9, {200.0f, 1.0f});
        frames[4].period = wrong;
        const auto early = ringOf({frames.begin(), frames.begin() + 8});
        EXPECT_EQ(early.Back(3).period, wrong);
        const auto ring = ringOf(frames);
        EXPECT_EQ(ring.Back(4).period, 200.0f);
    }
}

TEST(KestruneRecordRingTest, AGlideOfUnderAWholeToneIsLeftAlone)
{
    std::vector<Frame> frames;
    for (int i = 0; i < 12; ++i)
        frames.push_back({200.0f * std::exp2(static_cast<float>(i) / 100.0f), 1.0f});
    const auto ring = ringOf(frames);
    for (int age = 0; age < 9; ++age)
        EXPECT_EQ(ring.Back(age).period, frames[static_cast<std::size_t>(11 - age)].period);
}

TEST(KestruneRecordRingTest, TheMedianListensToVoicedFramesOnly)
{
    // Five unvoiced frames at a wrong period are outweighed by four voiced ones.
    std::vector<Frame> frames;
    for (const float period : {90.0f, 200.0f, 90.0f, 201.0f, 90.0f, 202.0f, 90.0f, 203.0f, 90.0f})
        frames.push_back({period, period == 90.0f ? 0.0f : 1.0f});
    const auto ring = ringOf(frames);
    EXPECT_EQ(ring.Back(4).period, 201.0f);  // where half of the weight is reached
}

TEST(KestruneRecordRingTest, WithoutAnyHoldTheShortestPeriodIsTheMedian)
{
    EXPECT_EQ(ringOf({{200.0f, 0.0f}}).Back(4).period, 200.0f);
    EXPECT_EQ(ringOf({{400.0f, 0.0f}}).Back(4).period, 300.0f);
}

TEST(KestruneRecordRingTest, FadingFramesKeepTheOneBeforeThemMarkedAsVoiced)
{
    std::vector<Frame> frames(9, {200.0f, 0.6f});
    EXPECT_FLOAT_EQ(ringOf(frames).Back(4).hold, 0.6f);
    frames[6].voicing = 0.4f;  // the third newest
    EXPECT_FLOAT_EQ(ringOf(frames).Back(4).hold, 0.75f);
    EXPECT_FLOAT_EQ(ringOf(frames).Back(4).strength, 0.6f);
    frames[4].voicing = 0.9f;
    EXPECT_FLOAT_EQ(ringOf(frames).Back(4).hold, 0.9f);
}

TEST(KestruneRecordRingTest, ReadsAreLinearBetweenRecordsAndConstantBeyond)
{
    const auto ring = ringOf({{100.0f, 0.5f}, {110.0f, 0.7f}, {104.0f, 0.9f}});
    EXPECT_FLOAT_EQ(ring.PeriodAt(-1000.0), 100.0f);
    EXPECT_FLOAT_EQ(ring.PeriodAt(0.25 * kHop), 102.5f);
    EXPECT_FLOAT_EQ(ring.PeriodAt(1.5 * kHop), 107.0f);
    EXPECT_FLOAT_EQ(ring.StrengthAt(1.5 * kHop), 0.8f);
    EXPECT_FLOAT_EQ(ring.HoldAt(0.5 * kHop), 0.6f);
    EXPECT_FLOAT_EQ(ring.PeriodAt(1.0e9), 104.0f);
}

TEST(KestruneRecordRingTest, AFullRingForgetsTheOldestAndReadsAcrossItsEnd)
{
    std::vector<Frame> frames;
    for (int i = 0; i < 50; ++i)
        frames.push_back({200.0f + static_cast<float>(i), 1.0f});
    const auto ring = ringOf(frames, 12);
    EXPECT_FLOAT_EQ(ring.PeriodAt(0.0), 238.0f);  // frames 38 .. 49 are kept
    for (int i = 38; i < 49; ++i)
        EXPECT_FLOAT_EQ(ring.PeriodAt((i + 0.5) * kHop), 200.5f + static_cast<float>(i));
}

}  // namespace orvane
