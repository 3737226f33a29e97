#include "zlib/common/ZBlockProcessingBay.h"

#include "support/BayArchiveCheck.h"
#include "support/ProbeBay.h"
#include "support/RealtimeGuard.h"
#include "support/TextMutation.h"

#include <gtest/gtest.h>

#include <functional>
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

TEST(ZBlockProcessingBayTest, ResetLosesWhatIsInFlight)
{
    Counting bay(2);
    bay.SetBlockSize(64);
    const std::function<void()> ways[] = {
        [&] { bay.Reset(); },          [&] { bay.SampleRateChanged(); },
        [&] { bay.SetBlockSize(64); }, [&] { bay.SetMaxBuffer(300); },
        [&] { bay.Prepare(); },
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(&way - ways);
        BlockRun(bay).Call(100);
        way();
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
