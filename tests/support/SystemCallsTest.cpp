#include "support/SystemCalls.h"

#include <cstdio>
#include <mutex>
#include <thread>

#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace orvane
{

TEST(SystemCallsTest, AreCountedAndMadeAllTheSame)
{
    const auto calls = systemCallsOf([] {
        const pid_t parent = getppid();
        for (int i = 0; i < 3; ++i)
            if (syscall(SYS_getppid) != parent)
                getppid();
    });
    if (!calls)
        GTEST_SKIP() << "system calls cannot be counted here";
    EXPECT_EQ(*calls, 4u);
}

TEST(SystemCallsTest, ThoseInsideTheLibraryAreSeen)
{
    std::FILE* const file = std::fopen("/dev/null", "w");
    ASSERT_NE(file, nullptr);
    const auto calls = systemCallsOf([=] {
        std::fputc('x', file);
        std::fflush(file);
    });
    std::fclose(file);
    if (!calls)
        GTEST_SKIP() << "system calls cannot be counted here";
    EXPECT_GE(*calls, 1u);
}

TEST(SystemCallsTest, WorkInMemoryMakesNone)
{
    std::mutex mutex;
    float sum = 0.0f;
    const auto calls = systemCallsOf([&] {
        const std::lock_guard lock(mutex);
        for (int i = 0; i < 1000; ++i)
            sum += 1.0f / static_cast<float>(i + 1);
    });
    if (!calls)
        GTEST_SKIP() << "system calls cannot be counted here";
    EXPECT_EQ(*calls, 0u);
}

TEST(SystemCallsTest, FunctionThatDoesNotComeBackIsNoZero)
{
    const auto calls = systemCallsOf([] { std::thread([] {}).join(); });
    if (!calls)
        GTEST_SKIP() << "system calls cannot be counted here";
    EXPECT_GE(*calls, 1u);
}

}  // namespace orvane
