// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZEventLoop.h"

#include "support/BoxRecorder.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZSemaphore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

namespace orvane
{

using namespace std::chrono_literals;

namespace
{

/// An event loop with a thread that serves it.
class ServedLoop
{
public:
    ServedLoop()
        : mThread([this] { loop.Run(); })
    {
    }
    ~ServedLoop()
    {
        loop.End();
        mThread.join();
    }

    /// Returns when everything that was posted before has been delivered.
    void Flush()
    {
        ZSemaphore done("done", 0);
        loop.Post([&] { done.Release(); });
        done.Wait();
    }

    ZEventLoop loop{ZEventLoop::Locking::kUnderInterfaceLock};

private:
    std::thread mThread;
};

}  // namespace

TEST(ZEventLoopTest, DeliversInOrderAndReportsExceptions)
{
    BoxRecorder recorder;
    ServedLoop served;
    std::vector<int> order;
    bool onThread = true;
    for (int i = 0; i < 100; ++i)
        served.loop.Post([&, i] {
            order.push_back(i);
            onThread = onThread && served.loop.IsLoopThread() && ZInterfaceLock::IsHeld();
            if (i == 0)
                throw ZException("first");
            if (i == 1)
                throw std::runtime_error("second");
        });
    served.Flush();
    ASSERT_EQ(order.size(), 100u);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_TRUE(onThread);
    EXPECT_FALSE(served.loop.IsLoopThread());
    ASSERT_EQ(recorder.boxes.size(), 2u);
    EXPECT_EQ(recorder.boxes[1].text.substr(0, 6), "second");
}

TEST(ZEventLoopTest, SkipsMissedTimerCallsInsteadOfABurst)
{
    ServedLoop served;
    std::atomic<int> ticks{0};
    const auto timer = served.loop.AddTimer(20ms, [&] { ++ticks; });
    served.loop.Post([] { std::this_thread::sleep_for(400ms); });
    served.Flush();
    served.Flush();
    served.loop.Remove(timer);
    EXPECT_LE(ticks, 5) << "20 ticks were missed";
}

TEST(ZEventLoopTest, RemoveWaitsForTheCallbackOfAnotherThread)
{
    ServedLoop served;
    ZSemaphore entered("entered", 0);
    std::atomic<bool> left{false};
    const auto timer = served.loop.AddTimer(1ms, [&] {
        entered.Release();
        std::this_thread::sleep_for(20ms);
        left = true;
    });
    entered.Wait();
    served.loop.Remove(timer);
    EXPECT_TRUE(left);

    std::atomic<int> ticks{0};
    ZSemaphore later("later", 0);
    ZEventLoop::SourceId own = 0;
    served.loop.Post([&] {
        own = served.loop.AddTimer(1ms, [&] {
            served.loop.Remove(own);
            ++ticks;
            later.Release();
        });
    });
    later.Wait();
    EXPECT_EQ(later.Wait(5'000), 1);
    EXPECT_EQ(ticks, 1);
}

TEST(ZEventLoopTest, RemoveDoesNotWaitUnderTheInterfaceLock)
{
    ServedLoop served;
    ZSemaphore entered("entered", 0);
    ZSemaphore goOn("go on", 0);
    const auto source = served.loop.Post([&] {
        const ZInterfaceUnlock unlocked;
        entered.Release();
        goOn.Wait();
    });
    entered.Wait();
    {
        const ZInterfaceLock lock;
        served.loop.Remove(source);
        goOn.Release();
    }
    std::atomic<int> ticks{0};
    const ZInterfaceLock lock;
    const auto timer = served.loop.AddTimer(1ms, [&] { ++ticks; });
    std::this_thread::sleep_for(10ms);
    served.loop.Remove(timer);
    EXPECT_EQ(ticks, 0) << "a callback that waits for the lock must not run";
}

TEST(ZModalRunTest, ServesOtherSourcesWithoutTheInterfaceLock)
{
    ServedLoop served;
    ZSemaphore ended("ended", 0);
    ZSemaphore tick("tick", 0);
    ZModalRun menu(served.loop, &menu);
    served.loop.Post([&] {
        menu.Run();
        EXPECT_TRUE(ZInterfaceLock::IsHeld());
        ended.Release();
    });
    served.Flush();  // delivered inside the modal run
    const auto timer = served.loop.AddTimer(1ms, [&] { tick.Release(); });
    {
        const ZInterfaceLock lock;  // free, although a callback is in progress
    }
    tick.Wait();
    tick.Wait();
    EXPECT_EQ(ended.Wait(0), 1);
    menu.End();
    EXPECT_EQ(ended.Wait(), 0);
    served.loop.Remove(timer);
}

TEST(ZModalRunTest, EndingAnOwnersRunsWaitsForTheirCallbacks)
{
    ServedLoop served;
    const int window = 0;
    for (const void* const owner : {static_cast<const void*>(&window), {}}) {
        bool callbackLeft = false;  // guarded by the interface lock
        served.loop.Post([&] {
            ZModalRun menu(served.loop, owner);
            menu.Run();
            std::this_thread::sleep_for(5ms);
            callbackLeft = true;
        });
        served.Flush();
        const ZInterfaceLock lock;
        served.loop.EndModalRuns(owner);
        EXPECT_TRUE(callbackLeft);
        EXPECT_TRUE(ZInterfaceLock::IsHeld());
    }
    served.Flush();  // the loop itself has no owner either, and must go on
}

TEST(ZModalRunTest, EndingAnOwnersRunsEndsThoseThatTheirCallbacksBeginMeanwhile)
{
    ServedLoop served;
    const int owner = 0;
    served.loop.Post([&] {
        for (int i = 0; i < 3; ++i) {
            ZModalRun menu(served.loop, &owner);
            menu.Run();
            std::this_thread::sleep_for(5ms);
        }
    });
    served.Flush();
    const ZInterfaceLock lock;
    served.loop.EndModalRuns(&owner);  // hangs where it forgets the second and third
}

TEST(ZModalRunTest, EndsWithTheOuterRunOfItsOwnerOnly)
{
    ServedLoop served;
    const int owners[2] = {};
    ZModalRun runs[] = {
        {served.loop, &owners[0]}, {served.loop, &owners[1]}, {served.loop, &owners[0]}};
    ZSemaphore ended[] = {{"outer", 0}, {"inner", 0}, {"nested", 0}};
    const auto post = [&](int i) {
        served.loop.Post([&, i] {
            runs[i].Run();
            ended[i].Release();
        });
        served.Flush();
    };
    for (const int i : {0, 1, 2})
        post(i);
    runs[0].End();
    EXPECT_EQ(ended[0].Wait(), 0);
    EXPECT_EQ(ended[2].Wait(), 0);
    served.Flush();
    EXPECT_EQ(ended[1].Wait(0), 1) << "goes on";
    runs[1].End();
    EXPECT_EQ(ended[1].Wait(), 0);
    post(0);  // has ended for good
    EXPECT_EQ(ended[0].Wait(), 0);
}

TEST(ZInterfaceLockTest, IsRecursiveAndReleasedAtEveryDepth)
{
    EXPECT_FALSE(ZInterfaceLock::IsHeld());
    const ZInterfaceLock first;
    const ZInterfaceLock second;
    {
        const ZInterfaceUnlock unlocked;
        EXPECT_FALSE(ZInterfaceLock::IsHeld());
        const ZInterfaceUnlock again;
        std::thread([] { const ZInterfaceLock lock; }).join();
    }
    EXPECT_TRUE(ZInterfaceLock::IsHeld());
}

TEST(ZInterfaceLockTest, RelockingDoesNotStarveAnotherThread)
{
    std::atomic<bool> stop{false};
    std::thread greedy([&] {
        while (!stop) {
            const ZInterfaceLock lock;
            std::this_thread::sleep_for(1ms);
        }
    });
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 20; ++i) {
        const ZInterfaceLock lock;
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
    stop = true;
    greedy.join();
}

}  // namespace orvane
