// SPDX-License-Identifier: GPL-3.0-or-later
// How hosts load the library, open instances, run sound through them and close them.

#include "PluginLibrary.h"
#include "support/Signals.h"

using namespace orvane;

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

constexpr std::size_t kLargestBlock = 8192;

/// Runs a signal through the left channel and its inverse at half the level through the right one,
/// in blocks of random sizes. Returns the left output.
std::vector<float> run(AEffect* effect, std::vector<float> signal)
{
    std::mt19937 random(7);
    const auto forRight = [](float sample) { return -0.5f * sample; };
    std::vector<float> right(signal.size());
    std::ranges::transform(signal, right.begin(), forRight);
    for (std::size_t at = 0; at < signal.size();) {
        const std::size_t frames = std::min(random() % kLargestBlock + 1, signal.size() - at);
        float* channels[] = {signal.data() + at, right.data() + at};
        effect->processReplacing(effect, channels, channels, static_cast<std::int32_t>(frames));
        at += frames;
    }
    EXPECT_TRUE(std::ranges::equal(right, signal, {}, {}, forRight));
    return signal;
}

}  // namespace

TEST(LifecycleTest, AHostWithoutAVersionGetsNoInstance)
{
    const LibraryHost host{TestHost(/*versionAnswer*/ 0)};
    const std::size_t before = threadCount();
    EXPECT_EQ(host.Open(), nullptr);
    EXPECT_EQ(TestHost::Calls().size(), 1u);
    EXPECT_EQ(host.library.Entry()(nullptr), nullptr);
    EXPECT_TRUE(threadsFallTo(before));
    EXPECT_EQ(host.library.Entry("main"), host.library.Entry("VSTPluginMain"));
}

TEST(LifecycleTest, ANewRecordIsCompleteAndUsableAtOnce)
{
    const LibraryHost host;
    AEffect* const effect = host.Open();
    ASSERT_NE(effect, nullptr);
    ASSERT_EQ(TestHost::Calls().size(), 1u) << "hosts crash on other opcodes here";
    EXPECT_EQ(TestHost::Calls()[0].opcode, audioMasterVersion);
    EXPECT_EQ(effect->magic, 0x56737450);
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

TEST(AudioPathTest, DryOutputIsTheInputDelayedByTheReportedLatencyForAnyBlockSizes)
{
    const LibraryHost host;
    TestHost::SetOffline(true);
    for (const auto& [rate, latency] :
         {std::pair{44100.0f, 18871}, {48000.0f, 20536}, {96000.0f, 41063}})
    {
        SCOPED_TRACE(rate);
        AEffect* const effect = host.Open();
        ask(effect, effSetSampleRate, 0, 0, nullptr, rate);
        ask(effect, effSetBlockSize, 0, std::intptr_t{kLargestBlock});
        ask(effect, effMainsChanged, 0, 1);
        EXPECT_EQ(effect->initialDelay, latency);
        const auto signal = whiteNoise(0.7f, latency + 20000, 9);
        std::vector<float> expected(static_cast<std::size_t>(latency), 0.0f);
        expected.insert(expected.end(), signal.begin(), signal.end() - latency);
        EXPECT_EQ(run(effect, signal), expected);
        closeEffect(effect);
    }
}
