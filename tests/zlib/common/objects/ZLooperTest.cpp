// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZLooper.h"

#include "support/Eventually.h"
#include "support/MessageRecorder.h"
#include "support/MessageWith.h"
#include "support/Test.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZInterfaceThread.h"

using namespace orvane;

namespace
{

using MessagePtr = boost::shared_ptr<const ZMessage>;

MessagePtr messageOf(std::int32_t id)
{
    return boost::make_shared<ZMessage>(id);
}

MessagePtr changeOf(const ZObject& element)
{
    return messageWith<std::uint64_t>(ZELEMENTCHANGED, "elementid", elementIdOf(&element));
}

/// Posts an element change as its sender does: only when none is pending.
void sendChange(ZLooper& looper, const ZObject& element, ZHandler& target)
{
    const MessagePtr change = changeOf(element);
    if (!looper.IsElementChangePending(*change, &target))
        looper.PostZMessage(change, &target);
}

/// A looper that counts its ticks and ZTIMER messages.
struct TickingLooper : ZLooper
{
    using ZLooper::ZLooper;
    ~TickingLooper() override { StopTimers(); }
    void HandleZMessage(MessagePtr message) override
    {
        if (message->GetId() == ZTIMER && message->Find("TimerID", lastTimer))
            ++timers;
        ZLooper::HandleZMessage(message);
    }

    std::atomic<int> ticks{0};
    std::atomic<int> timers{0};
    std::uint32_t lastTimer = 0;
    void FlushElementChanges() override { ++ticks; }
};

}  // namespace

TEST(ZLooperTest, DeliversInOrderWhenServed)
{
    ZLooper looper("test");
    MessageRecorder handler(&looper);
    looper.ProcessQueue();
    handler.PostZMessage(messageOf(ZMUTE));
    looper.PostZMessage(messageOf(ZPLAY), &handler);
    handler.PostZMessage(messageOf(ZMUTE));
    EXPECT_TRUE(looper.HasMessages());
    EXPECT_TRUE(handler.ids.empty());
    looper.HandleZMessage(messageOf(ZQUEUECHANGED));
    EXPECT_EQ(handler.ids, (MessageIds{ZMUTE, ZPLAY, ZMUTE}));
    EXPECT_FALSE(looper.HasMessages());
}

TEST(ZLooperTest, KeepsOnePendingChangeOfAnElementForEachTarget)
{
    ZLooper looper("test");
    MessageRecorder first(&looper);
    MessageRecorder second(&looper);
    const ZObject element;
    const ZObject other;
    for (int i = 0; i < 3; ++i) {
        sendChange(looper, element, first);
        sendChange(looper, element, second);
    }
    sendChange(looper, other, first);
    first.onMessage = [&] {
        if (first.ids.size() == 1)
            sendChange(looper, element, first);
    };
    looper.ProcessQueue();
    EXPECT_EQ(first.ids.size(), 3u) << "one for each element, and that during the delivery";
    EXPECT_EQ(second.ids.size(), 1u);
}

TEST(ZLooperTest, RemovingAHandlerDropsItsMessages)
{
    ZLooper looper("test");
    MessageRecorder stays(&looper);
    const ZObject element;
    auto leaves = std::make_unique<MessageRecorder>(&looper);
    looper.PostZMessage(messageOf(ZPLAY), leaves.get());
    sendChange(looper, element, *leaves);
    sendChange(looper, element, stays);
    ZHandler* const address = leaves.get();
    leaves->SetLooper(nullptr);
    EXPECT_FALSE(looper.HasHandler(address));
    EXPECT_FALSE(looper.IsElementChangePending(*changeOf(element), address));
    EXPECT_TRUE(looper.IsElementChangePending(*changeOf(element), &stays));
    leaves->PostZMessage(messageOf(ZPLAY));
    leaves.reset();
    looper.ProcessQueue();
    EXPECT_EQ(stays.ids.size(), 1u);
}

TEST(ZLooperTest, TimersRunOnTheInterfaceThreadUntilRemoved)
{
    TickingLooper looper("ticking");
    MessageRecorder handler(&looper);
    std::atomic<bool> proper{false};
    handler.onMessage = [&] {
        proper = ZInterfaceThread::IsCurrent() && ZInterfaceLock::IsHeld() && looper.ticks > 0;
    };
    looper.InitLooper();
    handler.PostZMessage(messageOf(ZPLAY));
    EXPECT_TRUE(eventually([&] { return handler.count == 1; }));
    EXPECT_TRUE(proper);

    const std::int32_t id = looper.AddTimer(2000, 0);
    EXPECT_TRUE(eventually([&] { return looper.timers >= 2; }));
    looper.RemoveTimer(id);
    EXPECT_EQ(looper.lastTimer, static_cast<std::uint32_t>(id));
    const int fired = looper.timers;
    EXPECT_TRUE(eventually([&, end = looper.ticks + 2] { return looper.ticks >= end; }));
    EXPECT_EQ(looper.timers, fired);
}

TEST(ZLooperTest, RunsOnAThreadOfItsOwnUntilItQuits)
{
    ZLooper looper("own");
    MessageRecorder handler(&looper);
    std::thread::id thread;
    handler.onMessage = [&] { thread = std::this_thread::get_id(); };
    looper.Run();
    handler.PostZMessage(messageOf(ZPLAY));
    EXPECT_TRUE(eventually([&] { return handler.count == 1; }));
    looper.Quit();
    EXPECT_NE(thread, std::this_thread::get_id());
    handler.PostZMessage(messageOf(ZPLAY));
    EXPECT_EQ(handler.ids, MessageIds{ZPLAY});
}

TEST(ZLooperTest, ThreadsPostAndBroadcastWhileHandlersComeAndGo)
{
    ZLooper looper("test");
    MessageRecorder handler(&looper);
    const ZObject element;
    std::atomic<int> posting{3};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            for (int n = 0; n < 500; ++n) {
                handler.PostZMessage(messageOf(ZPLAY));
                sendChange(looper, element, handler);
                looper.BroadcastZMessage(messageOf(ZRESET));
            }
            --posting;
        });
    while (posting > 0) {
        const MessageRecorder passing(&looper);
        looper.ProcessNextMessage();
    }
    for (std::thread& thread : threads)
        thread.join();
    looper.ProcessQueue();
    EXPECT_EQ(std::count(handler.ids.begin(), handler.ids.end(), ZPLAY), 1500);
    EXPECT_EQ(std::count(handler.ids.begin(), handler.ids.end(), ZRESET), 1500);
    EXPECT_FALSE(looper.IsElementChangePending(*changeOf(element), &handler));
}
