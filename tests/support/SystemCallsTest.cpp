// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SystemCalls.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <mutex>
#include <thread>

namespace orvane
{

TEST(SystemCallsTest, AreCountedInsideLibrariesTooAndWorkInMemoryMakesNone)
{
    std::mutex mutex;
    const auto none = systemCallsOf([&] { const std::lock_guard lock(mutex); });
    if (!none)
        GTEST_SKIP() << "system calls cannot be counted here";
    EXPECT_EQ(*none, 0u);
    EXPECT_EQ(systemCallsOf([] { getppid(); }), 1u);
    EXPECT_GE(systemCallsOf([] { std::fclose(std::fopen("/dev/null", "w")); }), 2u);
    EXPECT_GE(systemCallsOf([] { std::thread([] {}).join(); }), 1u);
    EXPECT_GE(systemCallsOf([] { _exit(1); }), 1u) << "it does not come back";
}

}  // namespace orvane
