// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZThruBay.h"

#include "support/BayArchiveCheck.h"
#include "support/ProbeBay.h"

#include <gtest/gtest.h>

namespace orvane
{

TEST(ZThruBayTest, TheLastInputGoesToAllOutputsThatAreLeft)
{
    ZThruBay thru(firstBay("<bay numchannels=\"3\"></bay>"), nullptr);
    const auto left = probe("left", 0);
    const auto right = probe("right", 0);
    right->value = 2.0f;
    const auto sink = boost::make_shared<ZOutputBay>("sink", 3);
    sink->SetFifoSize(16);
    sink->Prepare();
    for (std::int32_t i = 0; i < 3; ++i)
        sink->Route(i, thru, i);
    thru.Route(2, *left, 0);
    thru.SetInputChannelCount(2);
    thru.Route(0, *left, 0);
    thru.Route(1, *right, 0);
    runPass(*sink, 10);
    ZBuffer out(16, "ZBuffer");
    const float expected[] = {1.0f, 2.0f, 2.0f};
    for (std::int32_t i = 0; i < 3; ++i) {
        sink->Read({out.Data(), 10}, i);
        EXPECT_EQ(out.Data()[9], expected[i]);
    }
}

TEST(ZThruBayTest, HasAtMostAsManyInputsAsOutputs)
{
    ZThruBay thru(firstBay("<bay numchannels=\"2\"></bay>"), nullptr);
    EXPECT_EQ(failureOf([&] { thru.SetInputChannelCount(3); }),
              "Cannot have more input channels than outputs");
    EXPECT_NE(failureOf([&] { thru.SetInputChannelCount(-1); }), "none");
}

}  // namespace orvane
