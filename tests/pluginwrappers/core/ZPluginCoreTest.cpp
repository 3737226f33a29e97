// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/ZPluginCore.h"

#include "support/RealtimeGuard.h"
#include "support/SmallPlugin.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace orvane
{
namespace
{

/// A core with the application of one gain, under a shell that says whether it renders offline.
/// It ticks by its stream alone, since the timer of the application is not started.
class ZPluginCoreTest : public ::testing::Test, public ZPluginShell
{
protected:
    ZPluginCoreTest()
    {
        auto app = SmallPlugin::Make();
        mApp = app.get();
        const ZInterfaceLock lock;
        mCore = std::make_unique<ZPluginCore>(*this, std::move(app));
        mCore->SetBlockSize(kBlock);
    }
    ~ZPluginCoreTest() override
    {
        const ZInterfaceLock lock;
        mCore->Release();
    }
    bool HostIsOffline() override { return mIsOffline; }

    /// Runs blocks of ones until the latency is over and returns the last sample.
    float LastSample()
    {
        std::array<float, kBlock> left{};
        std::array<float, kBlock> right{};
        for (int i = 0; i < 8; ++i) {
            left.fill(1.0f);
            right.fill(1.0f);
            float* channels[] = {left.data(), right.data()};
            mCore->Run(channels, channels, kBlock, ZHostStream::Output::kReplaced);
        }
        return left.back();
    }

    static constexpr std::int32_t kBlock = 256;
    bool mIsOffline = false;
    SmallPlugin* mApp = nullptr;
    std::unique_ptr<ZPluginCore> mCore;
};

TEST_F(ZPluginCoreTest, AValueIsInForceFromTheNextBlockOnOnceItIsDelivered)
{
    mApp->Gain()->SetZFloat(0.5f, false);
    EXPECT_EQ(LastSample(), 1.0f) << "no tick has delivered it";
    {
        const ZInterfaceLock lock;
        mCore->Deliver();
    }
    EXPECT_EQ(LastSample(), 0.5f);
    mIsOffline = true;
    mApp->Gain()->SetZFloat(0.25f, false);
    EXPECT_EQ(LastSample(), 0.25f) << "the stream of an offline host delivers it";
}

TEST_F(ZPluginCoreTest,
       QueuedMidiReachesTheDocumentInOrderAtTheNextTickAndCostsTheAudioThreadNothing)
{
    {
        const RealtimeGuard guard;
        for (std::uint8_t note = 60; note < 64; ++note)
            mCore->QueueMidi({0x90, note, 100});
        mCore->QueueMidi({0xF8, 0, 0});  // a clock, no channel message
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    }
    EXPECT_TRUE(mApp->Document()->midi.empty());
    const ZInterfaceLock lock;
    mCore->Deliver();
    std::vector<int> notes;
    for (const auto& message : mApp->Document()->midi) {
        std::uint8_t note = 0;
        EXPECT_TRUE(message->Find("Which", note));
        notes.push_back(note);
    }
    EXPECT_EQ(notes, (std::vector<int>{60, 61, 62, 63}));
}

TEST(ZSpscQueueTest, KeepsTheOldestItemsWhenItIsFullAndTakesNewOnesAfterwards)
{
    constexpr int kCapacity = 8;
    ZSpscQueue<int, kCapacity> queue;
    for (int i = 0; i < kCapacity; ++i)
        ASSERT_TRUE(queue.Push(i));
    EXPECT_FALSE(queue.Push(100));
    EXPECT_EQ(*queue.Front(), 0);
    EXPECT_EQ(queue.Pop(), 0);
    EXPECT_TRUE(queue.Push(200));
    int last = 0;
    while (const auto item = queue.Pop())
        last = *item;
    EXPECT_EQ(last, 200);
    EXPECT_EQ(queue.Front(), nullptr);
}

}  // namespace
}  // namespace orvane
