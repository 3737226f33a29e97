// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RealtimeGuard.h"

#include "support/Test.h"

#include <poll.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdio>

using namespace orvane;

TEST(RealtimeGuardTest, CountsEveryKindOfForbiddenCall)
{
    std::mutex mutex;
    std::condition_variable condition;
    // Volatile, so that the compiler does not remove the allocations.
    void* volatile memory = nullptr;
    const std::pair<const char*, std::function<void()>> offences[] = {
        {"malloc", [&] { memory = std::malloc(16); }},
        // NOLINTNEXTLINE(bugprone-suspicious-realloc-usage): a failure fails the test anyway
        {"realloc", [&] { memory = std::realloc(memory, 4096); }},
        {"free", [&] { std::free(memory); }},
        {"aligned_alloc", [&] { memory = std::aligned_alloc(64, 64); }},
        {"free again", [&] { std::free(memory); }},
        {"new", [&] { memory = new int(1); }},
        {"delete", [&] { delete static_cast<int*>(memory); }},
        {"system call by number", [] { syscall(SYS_getppid); }},
        {"sleep", [] { std::this_thread::sleep_for(std::chrono::nanoseconds(1)); }},
        {"read", [] { (void)read(-1, nullptr, 0); }},
        {"poll", [] { poll(nullptr, 0, 0); }},
        {"stream", [] { std::fflush(stderr); }},
        // From here on locks, which come last.
        {"mutex", [&] { const std::lock_guard lock(mutex); }},
        {"notify", [&] { condition.notify_all(); }},
        {"thread", [] { std::thread([] {}).join(); }},
    };
    const std::size_t counted = std::size(offences) - (RealtimeGuard::kCountsLocks ? 0 : 3);
    for (const auto& [name, commit] : std::span(offences).first(counted)) {
        const RealtimeGuard guard;
        commit();
        EXPECT_GE(guard.violations(), 1u) << name;
        EXPECT_STRNE(guard.firstViolation(), "none") << name;
    }
}

TEST(RealtimeGuardTest, CountsOnlyCallsOfItsOwnThreadAndLifetime)
{
    std::mutex mutex;
    std::atomic<bool> guarded = false;
    std::atomic<bool> yielded = false;
    std::thread other([&] {
        while (!guarded)
            std::this_thread::yield();
        sched_yield();
        yielded = true;
    });
    {
        const RealtimeGuard outer;
        guarded = true;
        while (!yielded) {
        }
        const std::unique_lock lock(mutex, std::try_to_lock);
        EXPECT_EQ(outer.violations(), 0u) << outer.firstViolation();
        sched_yield();
        const RealtimeGuard inner;
        EXPECT_EQ(inner.violations(), 0u);
        EXPECT_EQ(outer.violations(), 1u);
        EXPECT_STREQ(outer.firstViolation(), "sched_yield");
    }
    other.join();
}
