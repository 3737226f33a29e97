// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZThread.h"

#include "support/BoxRecorder.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZSemaphore.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>

namespace orvane
{

TEST(ZSemaphoreTest, CountsAndTimesOut)
{
    ZSemaphore semaphore("test", 1);
    EXPECT_EQ(semaphore.Wait(), 0);
    for (const std::int32_t onlyLooks : {999, -5})
        EXPECT_EQ(semaphore.Wait(onlyLooks), 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(semaphore.Wait(20'000), 1);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
    EXPECT_EQ(semaphore.Release(), 0);
    EXPECT_EQ(semaphore.Wait(0), 0);
}

TEST(ZThreadTest, RunsOnlyWhenResumedAndAnExceptionEndsOnlyTheThread)
{
    BoxRecorder recorder;
    std::atomic<int> runs{0};
    const auto run = [](void* argument) {
        ++*static_cast<std::atomic<int>*>(argument);
        throw ZException("lost");
    };
    ZThread thread("test", run, &runs);
    EXPECT_EQ(thread.Join(1'000), -1);
    EXPECT_EQ(runs, 0);
    thread.Resume();
    thread.Resume();
    EXPECT_EQ(thread.Join(-1), 0);
    EXPECT_EQ(thread.Join(-1), 0);
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(thread.IsRunning());
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].text.substr(0, 4), "lost");
}

TEST(ZThreadTest, HasItsNameAndPriorityAndBlocksSignals)
{
    struct Seen
    {
        std::array<char, 16> name{};
        sigset_t blocked{};
        int nice = 0;
    } seen;
    const auto look = [](void* argument) {
        auto& out = *static_cast<Seen*>(argument);
        pthread_getname_np(pthread_self(), out.name.data(), out.name.size());
        pthread_sigmask(SIG_BLOCK, nullptr, &out.blocked);
        out.nice = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
    };
    ZThread thread("looper message thread", look, &seen);
    thread.SetPriority(ZThread::kIdle);
    thread.Resume();
    ASSERT_EQ(thread.Join(-1), 0);
    EXPECT_EQ(seen.nice, 19);
    EXPECT_STREQ(seen.name.data(), "looper message ");
    EXPECT_EQ(sigismember(&seen.blocked, SIGTERM), 1);
    EXPECT_EQ(sigismember(&seen.blocked, SIGSEGV), 0) << "a fault is the thread's own";
}

}  // namespace orvane
