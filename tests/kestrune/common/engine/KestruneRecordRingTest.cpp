// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneRecordRing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace orvane
{

namespace
{

struct Frame
{
    float period;
    float voicing;
};

/// Feeds frames one block apart, with the repair after each, and stops before the last advance.
KestruneRecordRing ringOf(const std::vector<Frame>& frames)
{
    KestruneRecordRing ring;
    ring.Allocate(37);
    ring.Fill(300.0f);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (i > 0)
            ring.Advance();
        const auto& [period, voicing] = frames[i];
        ring.Write({static_cast<double>(i) * 512.0, period, voicing, voicing});
        ring.Repair();
    }
    return ring;
}

}  // namespace

TEST(KestruneRecordRingTest, AnOctaveErrorFourBlocksOldIsReplacedAndAGlideLeftAlone)
{
    std::vector<Frame> frames;
    for (int i = 0; i < 9; ++i)
        frames.push_back({200.0f * std::exp2(static_cast<float>(i) / 100.0f), 1.0f});
    EXPECT_EQ(ringOf(frames).Back(4).period, frames[4].period);
    for (const float wrong : {100.0f, 400.0f}) {
        frames[4].period = wrong;
        EXPECT_EQ(ringOf({frames.begin(), frames.begin() + 8}).Back(3).period, wrong);
        EXPECT_NEAR(ringOf(frames).Back(4).period, 205.0f, 3.0f);
    }
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

}  // namespace orvane
