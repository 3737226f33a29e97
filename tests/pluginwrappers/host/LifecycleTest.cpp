// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestHost.h"
#include "pluginwrappers/interface/VstOpcodes.h"

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

// Opens, uses and closes instances in an order of its own.
void useInstances(const TestHost& host, unsigned seed)
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

// Ends the process as a host does that forgets an instance; a process that hangs is killed.
[[noreturn]] void exitWithin(unsigned seconds)
{
    ::alarm(seconds);
    std::exit(0);
}

// A host that closes an instance while it is told of a latency.
std::intptr_t closingHost(AEffect* effect, std::int32_t opcode, std::int32_t /*index*/,
                          std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    if (opcode == audioMasterIOChanged)
        closeEffect(effect);
    return opcode == audioMasterVersion ? 2400 : 0;
}

// Never unloaded, as by a host that forgets an instance, and kept where a leak checker sees it.
const TestHost* gForgetfulHost = nullptr;

[[noreturn]] void leaveAnInstanceOpen()
{
    gForgetfulHost = new TestHost;
    if (gForgetfulHost->Open() == nullptr)
        std::abort();
    exitWithin(/*seconds*/ 1);
}

}  // namespace

TEST(LifecycleTest, InstancesComeAndGoInAnyOrderOnSeveralThreads)
{
    const TestHost host;
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= 4; ++seed)
        threads.emplace_back([&host, seed] { useInstances(host, seed); });
    for (std::thread& thread : threads)
        thread.join();
}

TEST(LifecycleTest, TheLastInstanceLeavesNoThreadAndTheLibraryUnloadsHoweverItIsClosed)
{
    const std::size_t before = threadCount();
    for (int round = 0; round < 5; ++round) {
        {
            const PluginLibrary library;
            AEffect* const first = library.Entry()(closingHost);
            AEffect* const second = library.Entry()(closingHost);
            closeEffect(first);
            EXPECT_EQ(ask(second, effGetVstVersion), 2400);
            if (round == 0)
                closeEffect(second);
            else  // from inside the call that tells of a latency
                ask(second, effSetSampleRate, 0, 0, nullptr, 48000.0f);
        }
        EXPECT_FALSE(PluginLibrary::IsLoaded());
        EXPECT_TRUE(threadsFallTo(before));
    }
}

TEST(LifecycleDeathTest, AProcessThatLeavesAnInstanceOpenEndsCleanlyAndAtOnce)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(leaveAnInstanceOpen(), testing::ExitedWithCode(0), "^$");
}

}  // namespace orvane
