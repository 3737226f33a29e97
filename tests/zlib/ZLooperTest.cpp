#include "zlib/common/ZLooper.h"

#include "support/Eventually.h"
#include "zlib/common/ZInterfaceLock.h"
#include "zlib/common/ZInterfaceThread.h"
#include "zlib/common/ZMessage.h"
#include "zlib/common/ZMessageIds.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include <boost/make_shared.hpp>

namespace orvane
{

using namespace std::chrono_literals;

namespace
{

using MessagePtr = boost::shared_ptr<const ZMessage>;

MessagePtr messageOf(std::int32_t id)
{
    return boost::make_shared<ZMessage>(id);
}

MessagePtr changeOf(const ZObject& element)
{
    auto message = boost::make_shared<ZMessage>(ZELEMENTCHANGED);
    message->Add<std::uint64_t>("elementid", elementIdOf(&element));
    return message;
}

/// Posts as the sender of an element change does: not when one is pending.
void sendChange(ZLooper& looper, const ZObject& element, ZHandler& target)
{
    const MessagePtr change = changeOf(element);
    if (!looper.IsElementChangePending(*change, &target))
        looper.PostZMessage(change, &target);
}

class RecordingHandler : public ZHandler
{
public:
    using ZHandler::ZHandler;
    void HandleZMessage(MessagePtr message) override
    {
        ids.push_back(message->GetId());
        if (onMessage)
            onMessage();
    }

    std::vector<std::int32_t> ids;
    std::function<void()> onMessage;
};

/// A looper that counts its ticks and the timers that come to it.
class TickingLooper : public ZLooper
{
public:
    TickingLooper()
        : ZLooper("ticking")
    {
    }
    ~TickingLooper() override { StopTimers(); }
    void HandleZMessage(MessagePtr message) override
    {
        if (message->GetId() == ZTIMER && message->Find("TimerID", lastTimer))
            ++timers;
        ZLooper::HandleZMessage(message);
    }
    void Started() override { started = true; }

    std::atomic<int> ticks{0};
    std::atomic<int> timers{0};
    std::atomic<bool> started{false};
    std::uint32_t lastTimer = 0;

protected:
    void FlushElementChanges() override { ++ticks; }
};

}  // namespace

TEST(ZLooperTest, DeliversInOrderOfPostingAndOnlyWhenServed)
{
    ZLooper looper("test");
    RecordingHandler handler("h", &looper);
    looper.ProcessQueue();
    EXPECT_FALSE(looper.HasMessages());
    handler.PostZMessage(messageOf(ZMUTE));
    looper.PostZMessage(messageOf(ZPLAY), &handler);
    handler.PostZMessage(messageOf(ZMUTE));
    EXPECT_TRUE(looper.HasMessages());
    EXPECT_TRUE(handler.ids.empty());
    looper.HandleZMessage(messageOf(ZQUEUECHANGED));
    EXPECT_EQ(handler.ids, (std::vector<std::int32_t>{ZMUTE, ZPLAY, ZMUTE}));
    EXPECT_FALSE(looper.HasMessages());
}

TEST(ZLooperTest, ChangesOfOneElementForOneTargetCoalesce)
{
    ZLooper looper("test");
    RecordingHandler first("1", &looper);
    RecordingHandler second("2", &looper);
    const ZObject element;
    const ZObject other;
    for (int i = 0; i < 3; ++i) {
        sendChange(looper, element, first);
        sendChange(looper, element, second);
    }
    sendChange(looper, other, first);
    EXPECT_FALSE(looper.IsElementChangePending(*messageOf(ZELEMENTCHANGED), &first));
    EXPECT_FALSE(looper.IsElementChangePending(*messageOf(ZMUTE), &first));
    looper.ProcessQueue();
    EXPECT_EQ(first.ids.size(), 2u);
    EXPECT_EQ(second.ids.size(), 1u);
}

TEST(ZLooperTest, AChangeDuringDeliveryOfItsLikeIsKept)
{
    ZLooper looper("test");
    RecordingHandler handler("h", &looper);
    const ZObject element;
    handler.onMessage = [&] {
        if (handler.ids.size() == 1)
            sendChange(looper, element, handler);
    };
    sendChange(looper, element, handler);
    looper.ProcessNextMessage();
    EXPECT_TRUE(looper.HasMessages());
    looper.ProcessQueue();
    EXPECT_EQ(handler.ids.size(), 2u);
}

TEST(ZLooperTest, WhatWaitsForAHandlerGoesWithIt)
{
    ZLooper looper("test");
    RecordingHandler stays("stays", &looper);
    const ZObject element;
    auto leaves = std::make_unique<RecordingHandler>("leaves", &looper);
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

TEST(ZLooperTest, TheTickFlushesAndServesOnTheInterfaceThread)
{
    TickingLooper looper;
    RecordingHandler handler("h", &looper);
    std::atomic<int> delivered{0};
    std::atomic<bool> proper{true};
    handler.onMessage = [&] {
        proper = ZInterfaceThread::IsCurrent() && ZInterfaceLock::IsHeld() && looper.ticks > 0;
        ++delivered;
    };
    looper.InitLooper();
    looper.InitLooper();
    handler.PostZMessage(messageOf(ZPLAY));
    EXPECT_TRUE(eventually([&] { return delivered == 1; }));
    EXPECT_TRUE(proper);
    looper.StopTimers();
}

TEST(ZLooperTest, ATimerSendsItsIdUntilItIsRemoved)
{
    TickingLooper looper;
    looper.InitLooper();
    const std::int32_t id = looper.AddTimer(2000, 0);
    EXPECT_TRUE(eventually([&] { return looper.timers >= 2; }));
    looper.RemoveTimer(id);
    EXPECT_EQ(looper.lastTimer, static_cast<std::uint32_t>(id));
    const int fired = looper.timers;
    std::this_thread::sleep_for(10ms);
    EXPECT_EQ(looper.timers, fired);
}

TEST(ZLooperTest, ThreadModeStartsBeforeRunReturnsAndEndsAtQuit)
{
    TickingLooper looper;
    RecordingHandler handler("h", &looper);
    std::atomic<int> delivered{0};
    handler.onMessage = [&] { ++delivered; };
    looper.Run();
    EXPECT_TRUE(looper.started);
    handler.PostZMessage(messageOf(ZPLAY));
    EXPECT_TRUE(eventually([&] { return delivered == 1; }));
    looper.Quit();
    handler.PostZMessage(messageOf(ZPLAY));
    std::this_thread::sleep_for(60ms);
    EXPECT_EQ(delivered, 1);
}

TEST(ZLooperTest, ThreadsPostWhileOneDrains)
{
    ZLooper looper("test");
    RecordingHandler handler("h", &looper);
    const ZObject element;
    std::atomic<int> posting{3};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            for (int n = 0; n < 500; ++n) {
                handler.PostZMessage(messageOf(ZPLAY));
                sendChange(looper, element, handler);
            }
            --posting;
        });
    while (posting > 0)
        looper.ProcessQueue();
    for (std::thread& thread : threads)
        thread.join();
    looper.ProcessQueue();
    EXPECT_EQ(std::count(handler.ids.begin(), handler.ids.end(), ZPLAY), 1500);
    EXPECT_FALSE(looper.IsElementChangePending(*changeOf(element), &handler));
}

TEST(ZLooperTest, HandlersComeAndGoUnderBroadcasts)
{
    ZLooper looper("test");
    std::atomic<bool> stop{false};
    std::thread sender([&] {
        while (!stop)
            looper.BroadcastZMessage(messageOf(ZRESET));
    });
    for (int i = 0; i < 500; ++i) {
        const RecordingHandler handler("passing", &looper);
        looper.ProcessNextMessage();
    }
    stop = true;
    sender.join();
    looper.ProcessQueue();
}

}  // namespace orvane
