// SPDX-License-Identifier: GPL-3.0-or-later
// How hosts load the library, and open and close instances.

#include "PluginLibrary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <thread>
#include <vector>

namespace orvane
{

namespace
{

/// Opens, uses and closes instances in random order.
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

}  // namespace

TEST(LifecycleTest, AHostWithoutAVersionGetsNoInstance)
{
    const LibraryHost host(/*versionAnswer*/ 0);
    const std::size_t before = threadCount();
    EXPECT_EQ(host.Open(), nullptr);
    EXPECT_EQ(TestHost::Calls().size(), 1u);
    EXPECT_EQ(host.Library().Entry()(nullptr), nullptr);
    EXPECT_TRUE(threadsFallTo(before));
    EXPECT_EQ(host.Library().Entry("main"), host.Library().Entry("VSTPluginMain"));
}

TEST(LifecycleTest, ANewRecordIsCompleteAndUsableAtOnce)
{
    const LibraryHost host;
    AEffect* const effect = host.Open();
    ASSERT_NE(effect, nullptr);
    const auto calls = TestHost::Calls();
    ASSERT_EQ(calls.size(), 1u) << "hosts crash on other opcodes here";
    EXPECT_EQ(calls[0].opcode, audioMasterVersion);
    EXPECT_EQ(effect->magic, 0x56737450);
    EXPECT_EQ(effect->numPrograms, 7);
    EXPECT_EQ(effect->numInputs, 2);
    EXPECT_EQ(effect->numOutputs, 2);
    EXPECT_EQ(effect->flags, 0x39);
    EXPECT_EQ(effect->uniqueID, 0x6f636d6e);  // ocmn
    EXPECT_EQ(effect->version, 1);
    effect->processDoubleReplacing(effect, nullptr, nullptr, 64);
    effect->process(effect, nullptr, nullptr, 64);
    effect->processReplacing(effect, nullptr, nullptr, 64);
    for (const std::int32_t index : {-1, 7, INT32_MAX, INT32_MIN}) {
        effect->setParameter(effect, index, 0.5f);
        EXPECT_EQ(effect->getParameter(effect, index), 0.0f);
    }
    closeEffect(effect);
}

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

}  // namespace orvane
