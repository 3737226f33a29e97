#include "support/RealtimeGuard.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <semaphore.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

struct Offence
{
    const char* name;
    std::function<void()> commit;
    std::function<void()> prepare = [] {};
    std::function<void()> tidyUp = [] {};
    bool locks = false;
};

constexpr std::align_val_t kAlignment{64};

// Keeps the compiler from leaving out memory that nobody looks at.
void* volatile sink = nullptr;

void allocate()
{
    sink = std::malloc(16);
}
void release()
{
    std::free(sink);
}
void allocateAligned()
{
    void* memory = nullptr;
    EXPECT_EQ(posix_memalign(&memory, 64, 64), 0);
    sink = memory;
}
void makeInt()
{
    sink = new int(1);
}
void deleteInt()
{
    delete static_cast<int*>(sink);
}

void wait(std::condition_variable& condition)
{
    std::mutex mutex;
    std::unique_lock lock(mutex, std::try_to_lock);
    condition.wait_for(lock, std::chrono::nanoseconds(1));
}

const std::vector<Offence>& offences()
{
    static std::mutex mutex;
    static std::shared_mutex sharedMutex;
    static std::condition_variable condition;
    static sem_t semaphore;
    static const int ready = sem_init(&semaphore, 0, 1);
    static const std::string nothing;
    static const std::vector<Offence> list = {
        {"malloc", allocate, [] {}, release},
        {"free", release, allocate},
        {"calloc", [] { sink = std::calloc(4, 4); }, [] {}, release},
        {"realloc", [] { sink = std::realloc(sink, 4096); }, allocate, release},
        {"aligned_alloc", [] { sink = std::aligned_alloc(64, 64); }, [] {}, release},
        {"posix_memalign", allocateAligned, [] {}, release},
        {"new", makeInt, [] {}, deleteInt},
        {"delete", deleteInt, makeInt},
        {"aligned new", [] { sink = ::operator new(64, kAlignment); }, [] {},
         [] { ::operator delete(sink, kAlignment); }},
        {"string", [] { sink = std::string(100, 'x').data(); }},
        {.name = "mutex", .commit = [] { const std::lock_guard lock(mutex); }, .locks = true},
        {.name = "shared mutex for reading",
         .commit = [] { const std::shared_lock lock(sharedMutex); },
         .locks = true},
        {.name = "shared mutex for writing",
         .commit = [] { const std::unique_lock lock(sharedMutex); },
         .locks = true},
        {.name = "notify", .commit = [] { condition.notify_all(); }, .locks = true},
        {.name = "semaphore", .commit = [] { sem_wait(&semaphore); }, .locks = true},
        {.name = "thread", .commit = [] { std::thread([] {}).join(); }, .locks = true},
        {.name = "wait", .commit = [] { wait(condition); }, .locks = true},
        {"system call by number", [] { syscall(SYS_getppid); }},
        {"sleep", [] { std::this_thread::sleep_for(std::chrono::nanoseconds(1)); }},
        {"yield", [] { sched_yield(); }},
        {"open", [] { (void)open("/nowhere", O_RDONLY); }},
        {"read", [] { (void)read(-1, nullptr, 0); }},
        {"write", [] { (void)write(-1, nullptr, 0); }},
        {"close", [] { (void)close(-1); }},
        {"poll", [] { poll(nullptr, 0, 0); }},
        {"ioctl", [] { (void)ioctl(-1, FIONREAD, nullptr); }},
        {"mmap", [] { sink = mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0); }},
        {"munmap", [] { munmap(sink, 4096); }},
        {"stream", [] { std::fputs(nothing.c_str(), stderr); }},
        {"flush", [] { std::fflush(stderr); }},
    };
    EXPECT_EQ(ready, 0);
    return list;
}

}  // namespace

TEST(RealtimeGuardTest, SeesEveryKindOfCallThatMayNotBeMade)
{
    for (const Offence& offence : offences()) {
        if (offence.locks && !RealtimeGuard::kCountsLocks)
            continue;
        offence.prepare();
        {
            const RealtimeGuard guard;
            offence.commit();
            EXPECT_GE(guard.violations(), 1u) << offence.name;
            EXPECT_STRNE(guard.firstViolation(), "none") << offence.name;
        }
        offence.tidyUp();
    }
}

TEST(RealtimeGuardTest, LetsPassWhatNeitherAllocatesNorWaits)
{
    static std::atomic<int> value = 0;
    std::mutex mutex;
    std::vector<float> samples(64, 1.0f);
    const RealtimeGuard guard;
    value.fetch_add(1);
    for (float& sample : samples)
        sample *= 0.5f;
    const std::unique_lock lock(mutex, std::try_to_lock);
    EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
}

TEST(RealtimeGuardTest, CountsOnItsOwnThreadAndInItsOwnLifeOnly)
{
    allocate();
    std::atomic<bool> guarded = false;
    std::atomic<bool> allocated = false;
    std::thread other([&] {
        while (!guarded)
            std::this_thread::yield();
        release();
        sched_yield();
        allocated = true;
    });
    {
        const RealtimeGuard guard;
        guarded = true;
        while (!allocated) {
        }
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    }
    other.join();
}

TEST(RealtimeGuardTest, InnerGuardCountsFromItsOwnStart)
{
    const RealtimeGuard outer;
    sched_yield();
    {
        const RealtimeGuard inner;
        sched_yield();
        EXPECT_EQ(inner.violations(), 1u);
    }
    EXPECT_EQ(outer.violations(), 2u);
    EXPECT_STREQ(outer.firstViolation(), "sched_yield");
}

}  // namespace orvane
