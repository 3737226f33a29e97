// SPDX-License-Identifier: GPL-3.0-or-later
#include "PluginLibrary.h"
#include "support/Signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

constexpr std::size_t kLargestBlock = 8192;

/// Runs a signal through the left channel and its inverse at half the level through the right one,
/// in blocks of random sizes. Returns the left output.
std::vector<float> run(AEffect* effect, std::vector<float> signal)
{
    std::mt19937 random(7);
    const auto forRight = [](float sample) { return -0.5f * sample; };
    std::vector<float> other(signal.size());
    std::ranges::transform(signal, other.begin(), forRight);
    std::vector<float> left(signal.size());
    std::vector<float> right(signal.size());
    for (std::size_t at = 0; at < signal.size();) {
        const std::size_t frames = std::min(random() % kLargestBlock + 1, signal.size() - at);
        float* in[] = {signal.data() + at, other.data() + at};
        float* out[] = {left.data() + at, right.data() + at};
        effect->processReplacing(effect, in, out, static_cast<std::int32_t>(frames));
        at += frames;
    }
    EXPECT_TRUE(std::ranges::equal(right, left, {}, {}, forRight));
    return left;
}

}  // namespace

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

}  // namespace orvane
