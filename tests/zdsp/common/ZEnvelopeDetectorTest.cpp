// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZEnvelopeDetector.h"

#include "support/Test.h"

using namespace orvane;

namespace
{

struct ZEnvelopeDetectorTest : testing::Test
{
    float process(const std::vector<float>& samples) { return mDetector->Process(samples); }
    float processConstant(float value, std::size_t samples = 512)
    {
        return process(std::vector<float>(samples, value));
    }

    std::unique_ptr<ZEnvelopeDetector> mDetector = ZEnvelopeDetector::Create(false);
};

}  // namespace

TEST_F(ZEnvelopeDetectorTest, RisesByThreeQuartersInTheRiseTime)
{
    for (const int rate : {44100, 96000}) {
        for (const int blockSize : {1, 7, 441}) {
            SCOPED_TRACE(testing::Message() << rate << " in blocks of " << blockSize);
            mDetector = ZEnvelopeDetector::Create(false);
            mDetector->SetRiseTime(30.0f);
            mDetector->SetSampleRate(static_cast<float>(rate));
            const int samples = rate * 30 / 1000;
            for (int i = 0; i + blockSize <= samples; i += blockSize)
                processConstant(1.0f, static_cast<std::size_t>(blockSize));
            processConstant(1.0f, static_cast<std::size_t>(samples % blockSize + 1));
            EXPECT_NEAR(mDetector->Level(), -144.0 * 0.25, 0.2);
        }
    }
}

TEST_F(ZEnvelopeDetectorTest, RiseAndFallHaveTheirOwnTimes)
{
    EXPECT_EQ(processConstant(1.0f), -144.0f);  // no time is set
    mDetector->SetRiseTime(0.0f);
    EXPECT_NEAR(processConstant(0.1f), -20.0, 1e-4);
    mDetector->SetFallTime(1000.0f);
    const float fallen = processConstant(0.01f);
    EXPECT_LT(fallen, -20.0f);
    EXPECT_GT(fallen, -21.0f);
    mDetector->SetFallTime(0.0f);
    EXPECT_EQ(processConstant(0.0f), -144.0f);
}

TEST_F(ZEnvelopeDetectorTest, HoldsThePeaksSquareForThreeSeconds)
{
    mDetector->SetSampleRate(1000.0f);
    process({0.1f, -0.5f, 0.2f});
    EXPECT_EQ(mDetector->Peak(), 0.25f);
    processConstant(0.1f, 2999);
    EXPECT_EQ(mDetector->Peak(), 0.25f);
    processConstant(0.1f, 1000);
    EXPECT_FLOAT_EQ(mDetector->Peak(), 0.01f);
    const float level = mDetector->Level();
    EXPECT_EQ(mDetector->Process(std::span<const float>()), level);
    process({1e-20f});  // its square is no normal number
    EXPECT_FLOAT_EQ(mDetector->Peak(), 0.01f);
}

TEST_F(ZEnvelopeDetectorTest, CountsClipsUntilCleared)
{
    process({0.5f, 1.0f, 0.5f, -1.0f});
    EXPECT_EQ(mDetector->ClippedSamples(), 0u);
    process({1.0f, 0.5f});  // what came in the block before does not count
    EXPECT_EQ(mDetector->ClippedSamples(), 0u);
    processConstant(1.0f, 100);
    EXPECT_EQ(mDetector->ClipEvents(), 1u);
    EXPECT_EQ(mDetector->ClippedSamples(), 99u);
    EXPECT_EQ(mDetector->LastClipRun(), 0u);
    process({0.0f, 1.5f, 1.0f, -1.0f, 0.0f, 1.1f, 0.0f});
    EXPECT_EQ(mDetector->ClipEvents(), 3u);
    EXPECT_EQ(mDetector->ClippedSamples(), 103u);
    EXPECT_EQ(mDetector->LastClipRun(), 1u);
    mDetector->ClearClips();
    EXPECT_EQ(mDetector->ClippedSamples() + mDetector->ClipEvents(), 0u);
    processConstant(2.0f);
    EXPECT_EQ(mDetector->ClipEvents(), 1u) << "the run from before still counts as begun";
}

TEST_F(ZEnvelopeDetectorTest, RecoversFromInfiniteAndNanSamples)
{
    mDetector->SetRiseTime(0.0f);
    mDetector->SetFallTime(0.0f);
    for (const float value :
         {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN(), 1e30f})
    {
        processConstant(value);
        EXPECT_TRUE(std::isfinite(mDetector->Level())) << value;
        EXPECT_NEAR(processConstant(0.1f), -20.0, 1e-4) << value;
    }
}
