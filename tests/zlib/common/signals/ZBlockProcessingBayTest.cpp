// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZBlockProcessingBay.h"

#include "support/BayArchiveCheck.h"
#include "support/ProbeBay.h"
#include "support/Test.h"
#include "support/TextMutation.h"

using namespace orvane;

namespace
{

boost::shared_ptr<ZBlockProcessingBay> bayOf(std::int32_t channels)
{
    return boost::make_shared<ZBlockProcessingBay>(
        xmlOf("<bay numchannels=\"" + std::to_string(channels) + "\"></bay>"), nullptr);
}

/// Runs calls on samples that count up from 1, on the right with the other sign, and counts those
/// that do not come out after the delay.
struct BlockRun
{

    void Call(std::int32_t count)
    {
        for (std::int32_t channel = 0; channel < mBay.GetChannelCount(); ++channel)
            for (std::int32_t i = 0; i < count; ++i)
                Port(mBay.GetImport(channel)).GetBuffer()->Data()[i] = Sample(channel, done + i);
        mBay.ProcessSignal(0, static_cast<std::uint32_t>(count), 0, mBay.GetExportCount());
        for (std::int32_t channel = 0; channel < mBay.GetChannelCount(); ++channel) {
            const ZSignalPort& port = Port(mBay.GetExport(channel));
            for (std::int32_t i = 0; i < count; ++i)
                faults += port.GetBuffer()->Data()[i] != Sample(channel, done + i - mDelay);
        }
        done += count;
    }

    static ZSignalPort& Port(ZPort* port) { return dynamic_cast<ZSignalPort&>(*port); }
    static float Sample(std::int32_t channel, std::int64_t place)
    {
        return place < 0 ? 0.0f : static_cast<float>(channel == 0 ? place + 1 : -place - 1);
    }

    ZBlockProcessingBay& mBay;
    std::int64_t mDelay;
    std::int64_t done = 0;
    int faults = 0;
};

}  // namespace

TEST(ZBlockProcessingBayTest, OutputIsTheInputABlockLater)
{
    std::mt19937 random(3);
    for (const std::int32_t blockSize : {1, 7, 64, 512, 700}) {
        for (const std::int32_t channels : {1, 2}) {
            SCOPED_TRACE(blockSize);
            const auto bay = bayOf(channels);
            bay->SetMaxBuffer(2000);
            bay->SetBlockSize(blockSize);
            BlockRun run{*bay, blockSize};
            for (int call = 0; call < 40; ++call)
                run.Call(static_cast<std::int32_t>(pick(random, call % 2 ? 2001 : 100)));
            EXPECT_EQ(run.faults, 0);
            EXPECT_EQ(bay->GetFill(), run.done % blockSize);
        }
    }
}

TEST(ZBlockProcessingBayTest, ResetLosesWhatIsInFlight)
{
    const auto bay = bayOf(2);
    bay->SetBlockSize(64);
    const std::function<void()> ways[] = {
        [&] { bay->Reset(); },          [&] { bay->SampleRateChanged(); },
        [&] { bay->SetBlockSize(64); }, [&] { bay->SetMaxBuffer(300); },
        [&] { bay->Prepare(); },
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(&way - ways);
        BlockRun{*bay, 64}.Call(100);
        way();
        BlockRun run{*bay, 64};
        run.Call(300);
        EXPECT_EQ(run.faults, 0);
    }
}

TEST(ZBlockProcessingBayTest, NegativeSizeFollowsTheLongestPass)
{
    const auto bay = bayOf(1);
    bay->SetBlockSize(-1);
    EXPECT_EQ(bay->GetBlockSize(), 512);
    bay->SetMaxBuffer(300);
    EXPECT_EQ(bay->GetBlockSize(), 300);
    EXPECT_EQ(bay->GetLatency(), 300);
    bay->SetBlockSize(512);
    bay->SetMaxBuffer(100);
    EXPECT_EQ(bay->GetBlockSize(), 512);
}
