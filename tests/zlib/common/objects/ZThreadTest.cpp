// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZThread.h"

#include "support/BoxRecorder.h"
#include "support/RealtimeGuard.h"
#include "support/Test.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMailbox.h"
#include "zlib/common/objects/ZSemaphore.h"

#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace orvane;

TEST(ZSemaphoreTest, CountsAndTimesOut)
{
    ZSemaphore semaphore("test", 1);
    EXPECT_EQ(semaphore.Wait(), 0);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(semaphore.Wait(20'000), 1);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
}

TEST(ZThreadTest, RunsOnceResumedAndSurvivesItsException)
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
    EXPECT_EQ(runs, 1);
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
}

TEST(ZMailboxTest, GivesTheNewestValueOnce)
{
    ZMailbox<int> box;
    EXPECT_EQ(box.TakeNewest(), nullptr);
    for (int turn = 0; turn < 7; ++turn) {
        for (int value = 0; value <= turn; ++value)
            box.Post(10 * turn + value);
        const int* const taken = box.TakeNewest();
        ASSERT_NE(taken, nullptr);
        EXPECT_EQ(box.TakeNewest(), nullptr);
        EXPECT_EQ(*taken, 11 * turn);
    }
}

TEST(ZMailboxTest, ValuesArriveWholeInOrderAndWithoutALock)
{
    using Values = std::array<std::uint32_t, 40>;  // all of them equal
    constexpr std::uint32_t kTurns = 100000;
    ZMailbox<Values> box;
    std::thread writer([&] {
        Values values;
        for (std::uint32_t number = 1; number <= kTurns; ++number) {
            values.fill(number);
            box.Post(values);
        }
    });
    std::uint32_t last = 0;
    std::int64_t faults = 0;
    {
        const RealtimeGuard guard;
        while (last < kTurns) {
            const Values* const values = box.TakeNewest();
            if (!values)
                continue;
            faults += std::count(values->begin(), values->end(), values->front()) != 40;
            faults += values->front() <= last;
            last = values->front();
        }
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    }
    writer.join();
    EXPECT_EQ(faults, 0);
}
