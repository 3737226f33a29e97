#include "zlib/common/ZBlockProcessingBay.h"

#include "support/BayArchiveCheck.h"
#include "support/ProbeBay.h"
#include "support/RealtimeGuard.h"
#include "support/TextMutation.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace orvane
{

namespace
{

boost::shared_ptr<ZXMLElement> blockXml(std::int32_t channels)
{
    auto xml = boost::make_shared<ZXMLElement>("bay");
    xml->AddAttribute("name", "block");
    xml->AddAttribute("numchannels", channels);
    return xml;
}

/// Counts blocks.
class Counting : public ZBlockProcessingBay
{
public:
    explicit Counting(std::int32_t channels = 1)
        : ZBlockProcessingBay(blockXml(channels), nullptr)
    {
    }
    void ProcessBlock() noexcept override
    {
        ++blocks;
        ZBlockProcessingBay::ProcessBlock();
    }
    int blocks = 0;
};

/// Runs calls of given lengths with samples that count from 1 on the left and from -1 down on the
/// right, and gathers what comes out.
class BlockRun
{
public:
    explicit BlockRun(ZBlockProcessingBay& bay)
        : mBay(bay)
    {
    }

    void Call(std::uint32_t count)
    {
        for (std::int32_t channel = 0; channel < mBay.GetChannelCount(); ++channel) {
            float* const in = Port(mBay.GetImport(channel)).GetBuffer()->Data();
            const float sign = channel == 0 ? 1.0f : -1.0f;
            for (std::uint32_t i = 0; i < count; ++i)
                in[i] = sign * (mNext + static_cast<float>(i));
        }
        mNext += static_cast<float>(count);
        mBay.ProcessSignal(0, count, 0, mBay.GetExportCount());
        for (std::int32_t channel = 0; channel < mBay.GetChannelCount(); ++channel) {
            const ZSignalPort& port = Port(mBay.GetExport(channel));
            EXPECT_EQ(port.GetAvailable(), count);
            const float* const out = port.GetBuffer()->Data();
            outputs[channel == 0 ? 0 : 1].insert(outputs[channel == 0 ? 0 : 1].end(), out,
                                                 out + count);
        }
    }

    /// The output so far is the input, delayed.
    [[nodiscard]] bool IsDelayedBy(std::size_t delay) const
    {
        for (std::size_t i = 0; i < outputs[0].size(); ++i) {
            const float expected = i < delay ? 0.0f : static_cast<float>(i - delay + 1);
            if (outputs[0][i] != expected)
                return false;
            if (mBay.GetChannelCount() > 1 && outputs[1][i] != -expected)
                return false;
        }
        return true;
    }

    std::vector<float> outputs[2];

private:
    static ZSignalPort& Port(ZPort* port) { return dynamic_cast<ZSignalPort&>(*port); }

    ZBlockProcessingBay& mBay;
    float mNext = 1.0f;
};

}  // namespace

TEST(ZBlockProcessingBayTest, OutputIsTheInputABlockLaterForCallsOfAnyLength)
{
    std::mt19937 random(3);
    for (const std::int32_t blockSize : {1, 7, 64, 512, 700}) {
        for (const std::int32_t channels : {1, 2}) {
            SCOPED_TRACE(blockSize);
            Counting bay(channels);
            bay.SetMaxBuffer(2000);
            bay.SetBlockSize(blockSize);
            BlockRun run(bay);
            for (int call = 0; call < 40; ++call)
                run.Call(static_cast<std::uint32_t>(pick(random, call % 2 ? 2001 : 100)));
            EXPECT_TRUE(run.IsDelayedBy(static_cast<std::size_t>(blockSize)));
            EXPECT_EQ(static_cast<std::size_t>(bay.blocks * blockSize) + bay.GetFill(),
                      run.outputs[0].size());
        }
    }
}

TEST(ZBlockProcessingBayTest, ABlockIsMadeInTheCallThatFillsIt)
{
    Counting bay;
    bay.SetMaxBuffer(2000);
    bay.SetBlockSize(512);
    BlockRun run(bay);
    for (int call = 0; call < 5; ++call)
        run.Call(100);
    EXPECT_EQ(bay.blocks, 0);
    run.Call(100);
    EXPECT_EQ(bay.blocks, 1);
    EXPECT_EQ(bay.GetFill(), 88u);
    EXPECT_EQ(run.outputs[0][511], 0.0f);
    EXPECT_EQ(run.outputs[0][512], 1.0f);

    bay.Reset();
    bay.blocks = 0;
    run.Call(2000);
    EXPECT_EQ(bay.blocks, 3);
    EXPECT_EQ(bay.GetFill(), 464u);
    run.Call(0);
    EXPECT_EQ(bay.GetFill(), 464u);
}

TEST(ZBlockProcessingBayTest, WithoutABlockTheBayIsSilent)
{
    Counting bay;
    BlockRun run(bay);
    run.Call(100);
    bay.SetBlockSize(16);
    bay.SetBlockSize(0);
    run.Call(100);
    EXPECT_EQ(run.outputs[0], std::vector<float>(200, 0.0f));
    EXPECT_EQ(bay.blocks, 0);
    EXPECT_EQ(bay.GetLatency(), 0);
}

TEST(ZBlockProcessingBayTest, ResetLosesWhatIsInFlight)
{
    Counting bay(2);
    bay.SetBlockSize(64);
    for (int way = 0; way < 5; ++way) {
        SCOPED_TRACE(way);
        BlockRun(bay).Call(100);
        switch (way) {
        case 0:
            bay.Reset();
            break;
        case 1:
            bay.SampleRateChanged();
            break;
        case 2:
            bay.SetBlockSize(64);
            break;
        case 3:
            bay.SetMaxBuffer(300);
            break;
        default:
            bay.Prepare();
        }
        BlockRun run(bay);
        run.Call(300);
        EXPECT_TRUE(run.IsDelayedBy(64));
    }
}

TEST(ZBlockProcessingBayTest, ANegativeSizeFollowsTheLongestPass)
{
    Counting bay;
    bay.SetBlockSize(-1);
    EXPECT_EQ(bay.GetBlockSize(), 512);
    bay.SetMaxBuffer(300);
    EXPECT_EQ(bay.GetBlockSize(), 300);
    EXPECT_EQ(bay.GetLatency(), 300);
    bay.SetBlockSize(512);
    bay.SetMaxBuffer(100);
    EXPECT_EQ(bay.GetBlockSize(), 512);
    bay.Prepare();
    bay.SetMaxBuffer(200);
    EXPECT_EQ(bay.GetBlockSize(), 200);
}

TEST(ZBlockProcessingBayTest, LatencyIsTheBlockAndWhatTheEngineAdds)
{
    Counting bay;
    bay.SetBlockSize(512);
    EXPECT_EQ(bay.GetLatency(), 512);
    bay.SetLatency(18359);
    EXPECT_EQ(bay.GetLatency(), 18871);
    bay.SetBlockSize(557);
    EXPECT_EQ(bay.GetLatency(), 557);
}

TEST(ZBlockProcessingBayTest, HasTheChannelsItCanHold)
{
    Counting bay(2);
    EXPECT_EQ(bay.GetImport(1)->GetName(), "input");
    EXPECT_EQ(bay.GetExport(1)->GetName(), "output");
    EXPECT_EQ(bay.ExtractHeader()->GetInt32("numchannels"), 2);
    EXPECT_EQ(failureOf([] { Counting(3); }), "Bay 'block' needs numchannels from 1 to 2.");
    bay.RemoveImport(1);
    bay.SetBlockSize(4);
    bay.ProcessSignal(0, 10, 0, 2);

    bay.SetLatency(10);
    const auto clone = boost::dynamic_pointer_cast<ZBlockProcessingBay>(bay.Clone());
    EXPECT_EQ(clone->GetBlockSize(), 4);
    EXPECT_EQ(clone->GetLatency(), 14);
}

TEST(ZBlockProcessingBayTest, APassNeitherAllocatesNorWaits)
{
    SmallApplication application;
    registerBays(application.GetClassRegistry());
    ZSignalBay network(firstBay(networkOfEachClass()), &application);
    const auto block =
        boost::dynamic_pointer_cast<ZBlockProcessingBay>(network.FindBay("inner")->GetBay(0));
    block->SetBlockSize(24);
    ZInputBay input("input", 2);
    ZOutputBay output("output", 2);
    input.SetFifoSize(64);
    output.SetFifoSize(64);
    output.Prepare();
    for (std::int32_t i = 0; i < 2; ++i) {
        network.Route(i, input, i);
        output.Route(i, network, i);
    }
    const ZBuffer buffer(64, "ZBuffer");
    const RealtimeGuard guard;
    input.Write(buffer, 64, 0);
    input.Write(buffer, 64, 1);
    runPass(output, 64);
    EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    EXPECT_EQ(output.GetWritten(), 64u);
    EXPECT_EQ(block->GetFill(), 16u);
}

}  // namespace orvane
