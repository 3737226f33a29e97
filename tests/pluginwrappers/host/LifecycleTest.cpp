// SPDX-License-Identifier: GPL-3.0-or-later
#include "PluginLibrary.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <thread>
#include <vector>

namespace orvane
{

namespace
{

// Opens, uses and closes instances in random order.
void useInstances(const LibraryHost& host, unsigned seed)
{
    std::mt19937 random(seed);
    for (int round = 0; round < 20; ++round) {
        std::vector<AEffect*> open;
        for (int i = 0; i < 5; ++i)
            open.push_back(host.Open());
        std::shuffle(open.begin(), open.end(), random);
        for (AEffect* const effect : open) {
            ask(effect, effMainsChanged, 0, 1);
            EXPECT_EQ(ask(effect, effGetVstVersion), 2400);
            ask(effect, effMainsChanged, 0, 0);
            closeEffect(effect);
        }
    }
}

// Never deleted, so that the library stays loaded at exit; global, so that it is not a leak.
const LibraryHost* gForgetfulHost = nullptr;

// Ends the process without closing an instance; the alarm kills a process that hangs.
[[noreturn]] void leaveAnInstanceOpen()
{
    gForgetfulHost = new LibraryHost;
    if (gForgetfulHost->Open() == nullptr)
        std::abort();
    ::alarm(/*seconds*/ 1);
    std::exit(0);
}

}  // namespace

TEST(LifecycleTest, InstancesOpenAndCloseInAnyOrderOnSeveralThreads)
{
    const LibraryHost host;
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= 4; ++seed)
        threads.emplace_back([&host, seed] { useInstances(host, seed); });
    for (std::thread& thread : threads)
        thread.join();
}

TEST(LifecycleTest, ClosingTheLastInstanceEndsItsThreadsAndTheLibraryUnloads)
{
    const std::size_t before = threadCount();
    const TestHost host;
    TestHost::On(audioMasterIOChanged, closeEffect);
    for (int round = 0; round < 5; ++round) {
        {
            const PluginLibrary library;
            AEffect* const first = library.Entry()(TestHost::callback);
            AEffect* const second = library.Entry()(TestHost::callback);
            closeEffect(first);
            EXPECT_EQ(ask(second, effGetVstVersion), 2400);
            if (round == 0)
                closeEffect(second);
            else  // which the host closes from inside audioMasterIOChanged
                ask(second, effSetSampleRate, 0, 0, nullptr, 48000.0f);
        }
        EXPECT_FALSE(PluginLibrary::IsLoaded());
        EXPECT_TRUE(threadsFallTo(before));
    }
}

TEST(LifecycleDeathTest, AProcessWithAnOpenInstanceEndsCleanlyAndAtOnce)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(leaveAnInstanceOpen(), testing::ExitedWithCode(0), "^$");
}

}  // namespace orvane
