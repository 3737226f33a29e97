#include "zlib/common/ZThread.h"

#include "zlib/common/ZException.h"
#include "zlib/common/ZSemaphore.h"

#include "support/BoxRecorder.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>

#include <pthread.h>
#include <signal.h>

namespace orvane
{

TEST(ZSemaphoreTest, CountsAndTimesOut)
{
    ZSemaphore semaphore("test", 1);
    EXPECT_EQ(semaphore.Wait(), 0);
    EXPECT_EQ(semaphore.Wait(999), 1);
    EXPECT_EQ(semaphore.Wait(-5), 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(semaphore.Wait(20'000), 1);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
    EXPECT_EQ(semaphore.Release(), 0);
    EXPECT_EQ(semaphore.Wait(0), 0);
}

TEST(ZThreadTest, RunsOnlyOnceResumedAndCanBeJoinedTwice)
{
    std::atomic<int> runs{0};
    ZThread thread(
        "test", [](void* argument) { ++*static_cast<std::atomic<int>*>(argument); }, &runs);
    EXPECT_EQ(thread.Join(1'000), -1);
    EXPECT_EQ(runs, 0);
    thread.Resume();
    thread.Resume();
    EXPECT_EQ(thread.Join(-1), 0);
    EXPECT_EQ(thread.Join(-1), 0);
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(thread.IsRunning());
}

TEST(ZThreadTest, CarriesItsNameAndLeavesSignalsToTheHost)
{
    struct Seen
    {
        std::array<char, 16> name{};
        bool takesTerminate = true;
        bool takesFaults = false;
    } seen;
    ZThread thread(
        "looper message thread",
        [](void* argument) {
            auto& out = *static_cast<Seen*>(argument);
            pthread_getname_np(pthread_self(), out.name.data(), out.name.size());
            sigset_t blocked;
            pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
            out.takesTerminate = sigismember(&blocked, SIGTERM) == 0;
            out.takesFaults = sigismember(&blocked, SIGSEGV) == 0;
        },
        &seen);
    thread.Resume();
    ASSERT_EQ(thread.Join(-1), 0);
    EXPECT_STREQ(seen.name.data(), "looper message ");
    EXPECT_FALSE(seen.takesTerminate);
    EXPECT_TRUE(seen.takesFaults);
}

TEST(ZThreadTest, AnExceptionIsReportedAndEndsTheThreadOnly)
{
    BoxRecorder recorder;
    ZThread thread(
        "test", [](void*) { throw ZException(-1, "lost"); }, nullptr);
    thread.Resume();
    EXPECT_EQ(thread.Join(-1), 0);
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].text.substr(0, 4), "lost");
}

}  // namespace orvane
