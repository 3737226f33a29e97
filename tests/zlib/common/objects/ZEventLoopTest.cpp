// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZEventLoop.h"

#include "support/BoxRecorder.h"
#include "support/Test.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZSemaphore.h"

using namespace orvane;

using namespace std::chrono_literals;

namespace
{

/// An event loop with a thread that serves it.
struct ServedLoop
{
    ~ServedLoop()
    {
        loop.End();
        thread.join();
    }

    /// Returns when everything that was posted before has been delivered.
    void Flush()
    {
        ZSemaphore done("done", 0);
        loop.Post([&] { done.Release(); });
        done.Wait();
    }

    ZEventLoop loop{ZEventLoop::Locking::kUnderInterfaceLock};
    std::thread thread{[this] { loop.Run(); }};
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
