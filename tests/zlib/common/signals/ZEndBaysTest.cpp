// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ProbeBay.h"
#include "zlib/common/signals/ZInputBay.h"
#include "zlib/common/signals/ZOutputBay.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane
{

namespace
{

/// A line from input to output, without anything between.
class ZEndBaysTest : public testing::Test
{
protected:
    ZEndBaysTest()
    {
        input.SetFifoSize(64);
        output.SetFifoSize(64);
        output.Prepare();
        for (std::int32_t channel = 0; channel < 2; ++channel)
            output.Route(channel, input, channel);
    }

    ZInputBay input{"input", 2};
    ZOutputBay output{"output", 2};
};

}  // namespace

TEST_F(ZEndBaysTest, AFullFifoTakesWhatItHasRoomFor)
{
    const std::vector<float> samples(30, 0.5f);
    for (int pass = 0; pass < 3; ++pass) {
        input.Write(samples, 0);
        input.Write(samples, 1);
        runPass(output, 30);
    }
    EXPECT_EQ(output.GetWritten(), 4u);
    EXPECT_EQ(output.Available(0), 64u);
    EXPECT_EQ(output.Free(1), 0u);
    output.Reset();
    EXPECT_EQ(output.Available(0), 0u);
}

TEST_F(ZEndBaysTest, NobodyWritesOrReadsBeyondTheEnds)
{
    std::vector<float> samples(65);
    EXPECT_EQ(failureOf([&] { input.Write(samples, 0); }), "Read first");
    EXPECT_EQ(failureOf([&] { input.Write({samples.data(), 1}, 2); }), "Read first");
    EXPECT_EQ(failureOf([&] { output.Read({samples.data(), 1}, 0); }), "Write first");
    EXPECT_EQ(failureOf([&] { output.Read({}, -1); }), "Write first");
    EXPECT_EQ(failureOf([&] { input.SetFifoSize(100); }), "Fifo Buffer must have power of 2 size");
    EXPECT_NE(failureOf([&] { input.SetFifoSize(-4); }), "none");
    EXPECT_EQ(input.Free(0), 64u);
    EXPECT_NE(failureOf([] { ZInputBay("x", -1); }), "none");
    EXPECT_NE(failureOf([] { ZOutputBay("x", 65); }), "none");
}

}  // namespace orvane
