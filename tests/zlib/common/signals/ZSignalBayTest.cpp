// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZSignalBay.h"

#include "support/ProbeBay.h"
#include "support/Test.h"
#include "support/TextMutation.h"

using namespace orvane;

namespace
{

/// A sink of one channel.
boost::shared_ptr<ZOutputBay> sinkOf(std::int32_t channels = 1)
{
    const auto sink = boost::make_shared<ZOutputBay>("sink", channels);
    sink->SetFifoSize(1024);
    sink->Prepare();
    return sink;
}

/// A random network of bays whose routes lead from lower to higher numbers, and the plain account
/// of what a pass must do in it.
struct RandomNetwork
{
    explicit RandomNetwork(unsigned seed)
        : mRandom(seed)
    {
        for (int i = 0; i < kBays; ++i)
            bays.push_back(probe("bay", i < 3 ? 0 : 1 + static_cast<int>(pick(mRandom, 3)), 2));
        for (std::int32_t i = 0; i < sink->GetImportCount(); ++i)
            sink->Route(i, *bays[static_cast<std::size_t>(kBays - 1 - i)], 0);
    }

    void ChangeARoute()
    {
        const std::size_t target = 3 + pick(mRandom, kBays - 3);
        const std::size_t source = pick(mRandom, target);
        const auto import = static_cast<std::int32_t>(
            pick(mRandom, static_cast<std::size_t>(bays[target]->GetImportCount())));
        const auto exported = static_cast<std::int32_t>(pick(mRandom, 2));
        if (bays[target]->IsRouted(import, *bays[source], exported))
            bays[target]->Unroute(import, *bays[source], exported);
        else
            bays[target]->Route(import, *bays[source], exported);
    }

    /// Bays behind the first routes of the bay's imports.
    static std::set<const ZBay*> SourcesOf(const ZBay& bay)
    {
        std::set<const ZBay*> sources;
        for (std::int32_t i = 0; i < bay.GetImportCount(); ++i)
            if (!bay.GetImport(i)->GetRoutes().empty())
                sources.insert(bay.GetImport(i)->GetRoutes()[0].bay);
        return sources;
    }

    /// How many live bays read each bay that lives.
    [[nodiscard]] std::map<const ZBay*, int> Demands() const
    {
        std::map<const ZBay*, int> demands;
        std::vector<const ZBay*> live{sink.get()};
        for (std::size_t i = 0; i < live.size(); ++i)
            for (const ZBay* const source : SourcesOf(*live[i]))
                if (++demands[source] == 1)
                    live.push_back(source);
        return demands;
    }

    static constexpr int kBays = 12;
    std::vector<boost::shared_ptr<ProbeBay>> bays;
    boost::shared_ptr<ZOutputBay> sink = sinkOf(3);

private:
    std::mt19937 mRandom;
};

void expectPlainPass(RandomNetwork& network, std::uint32_t count)
{
    for (const auto& bay : network.bays)
        bay->runs = 0;
    runPass(*network.sink, count);
    const auto demands = network.Demands();
    for (const auto& bay : network.bays) {
        const bool isLive = demands.contains(bay.get());
        ASSERT_EQ(bay->GetDemand(), isLive ? demands.at(bay.get()) : 0);
        ASSERT_EQ(bay->IsActive(), isLive);
        ASSERT_EQ(bay->runs, isLive ? 1 : 0);
    }
}

}  // namespace

TEST(ZSignalBayTest, RandomNetworksMatchAPlainModel)
{
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        RandomNetwork network(seed);
        for (int turn = 0; turn < 40; ++turn) {
            for (int i = 0; i < 8; ++i)
                network.ChangeARoute();
            ASSERT_NO_FATAL_FAILURE(expectPlainPass(network, 16));
        }
        while (network.bays.size() > 1) {
            network.bays.pop_back();  // takes its routes along
            runPass(*network.sink, 16);
        }
        EXPECT_FALSE(network.bays.front()->IsActive());
    }
}

TEST(ZSignalBayTest, TakesTheSmallestOfItsAudioImports)
{
    const auto source = probe("source", 0);
    const auto shortOne = probe("short", 0);
    const auto mixer = probe("mixer", 2);
    const auto control = probe("control", 0, 1, ZPort::kControl);
    shortOne->SetMaxBuffer(30);
    mixer->AddImport(boost::make_shared<ZSignalPort>("control", ZPort::kControl));
    const auto sink = sinkOf();
    sink->Route(0, *mixer, 0);
    mixer->Route(0, *source, 0);
    mixer->Route(1, *shortOne, 0);
    control->SetMaxBuffer(5);
    mixer->Route(2, *control, 0);
    runPass(*sink, 100);
    EXPECT_EQ(source->lastCount, 100u);
    EXPECT_EQ(mixer->lastCount, 30u);
    EXPECT_EQ(sink->GetWritten(), 30u);
    mixer->SetMaxBuffer(20);
    runPass(*sink, 0xffffffff);
    EXPECT_EQ(source->lastCount, 20u) << "more than the ports of a consumer hold would be lost";
    mixer->Unroute(1, *shortOne, 0);
    runPass(*sink, 100);
    EXPECT_EQ(mixer->lastCount, 0u) << "an import without a source has no samples";
}

TEST(ZSignalBayTest, RequestGoesOnWhenTheLastConsumerHasAsked)
{
    const auto source = probe("source", 0);
    const auto middle = probe("middle");
    const auto narrow = probe("narrow", 2);  // asks first, and twice
    const auto wide = probe("wide");
    const auto sink = sinkOf(2);
    narrow->SetMaxBuffer(30);
    middle->Route(0, *source, 0);
    narrow->Route(0, *middle, 0);
    narrow->Route(1, *middle, 0);
    wide->Route(0, *middle, 0);
    sink->Route(0, *narrow, 0);
    sink->Route(1, *wide, 0);
    runPass(*sink, 100);
    EXPECT_EQ(source->lastCount, 100u) << "the largest consumer sets the block";
    EXPECT_EQ(narrow->lastCount, 30u);
    EXPECT_EQ(wide->lastCount, 100u);
}

TEST(ZSignalBayTest, ImportWithoutASourceReadsZeros)
{
    auto source = probe("source", 0);
    const auto target = probe("target");
    const auto sink = sinkOf();
    target->Route(0, *source, 0);
    sink->Route(0, *target, 0);
    runPass(*sink, 10);
    EXPECT_EQ(target->Input().Data()[0], 1.0f);
    source->SetMaxBuffer(2000);  // replaces the buffer that the target reads
    EXPECT_EQ(target->Input().Data()[0], 0.0f);
    runPass(*sink, 10);
    EXPECT_EQ(target->Input().Data()[0], 1.0f);
    source.reset();
    EXPECT_EQ(target->Input().Data()[0], 0.0f);
}

TEST(ZSignalBayTest, RequestsThatNobodyPullsDoNoHarm)
{
    std::vector<boost::shared_ptr<ProbeBay>> bays;
    for (std::size_t i = 0; i < 200; ++i) {
        bays.push_back(probe("bay", i == 0 ? 0 : 2));
        for (std::int32_t import = 0; import < bays[i]->GetImportCount(); ++import)
            bays[i]->Route(import, *bays[i - 1], 0);
    }
    bays.back()->PullRange(0, 100);
    EXPECT_EQ(bays.back()->runs, 1);
    EXPECT_EQ(bays[198]->runs, 0);
    const auto sink = sinkOf();
    sink->Route(0, *bays.back(), 0);
    for (int i = 0; i < 100; ++i) {
        sink->SetRequested(10);
        sink->RequestInputs();
    }
    runPass(*sink, 1);
    EXPECT_EQ(bays.front()->runs, 1) << "not once for each way that leads to it";
    sink->RequestInputs();
    bays.resize(1);
    bays.front()->Pull();  // must not serve imports that are gone
    sink->Route(0, *bays.front(), 0);
    runPass(*sink, 10);
    EXPECT_EQ(sink->GetWritten(), 10u);
}

TEST(ZSignalBayTest, EachBayRunsOnItsOwnTimeBase)
{
    const auto source = probe("source", 0);
    const auto target = probe("target");
    const auto sink = sinkOf();
    target->Route(0, *source, 0);
    sink->Route(0, *target, 0);
    sink->SetPosition(1000, false);
    source->SetPosition(50, false);
    runPass(*sink, 10);
    EXPECT_EQ(target->lastPosition, 1000u);
    EXPECT_EQ(source->lastPosition, 50u);
    sink->SetPosition(1010, false);
    runPass(*sink, 10);
    EXPECT_EQ(source->lastPosition, 60u);
    sink->SetPosition(3, true);
    runPass(*sink, 10);
    EXPECT_EQ(source->lastPosition, 3u);
}
