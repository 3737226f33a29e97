// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/ZStreamClock.h"

#include "support/Test.h"

using namespace orvane;

using namespace std::chrono_literals;

namespace
{

constexpr std::int32_t kFrames = 441;  // 10 ms
constexpr double kRate = 44100.0;

std::int64_t countOf(const std::vector<bool>& ticks)
{
    return std::count(ticks.begin(), ticks.end(), true);
}

struct SimulatedHost
{
    /// Plays blocks at intervals of pace and returns for each whether the stream ticked.
    std::vector<bool> Play(int blocks, ZStreamClock::Clock::duration pace, bool offline = false)
    {
        std::vector<bool> ticks;
        for (int i = 0; i < blocks; ++i) {
            now += pace;
            ticks.push_back(clock.BlockBegins(now, offline, kFrames, kRate));
        }
        return ticks;
    }
    ZStreamClock clock;
    ZStreamClock::Time now{1000s};
};

}  // namespace

TEST(ZStreamClockTest, TheTimerTicksWhileAHostPlaysInRealTime)
{
    SimulatedHost host;
    EXPECT_TRUE(host.clock.WallClockTicks(host.now));
    // A day on a sound device that runs a thousandth fast, its blocks in bursts of eight.
    std::int64_t ticks = 0;
    for (int i = 0; i < 24 * 3600 * 100 / 8; ++i)
        ticks += countOf(host.Play(7, 0ms)) + countOf(host.Play(1, 79920us));
    EXPECT_EQ(ticks, 0);
    EXPECT_TRUE(host.clock.WallClockTicks(host.now));
}

TEST(ZStreamClockTest, AnOfflineStreamTicksAtItsFirstBlockAndThenEvery41MsOfAudioOrOnceABlock)
{
    SimulatedHost host;
    const std::vector<bool> ticks = host.Play(10, 30us, /*offline*/ true);
    // Due at 0, 41.7 and 83.3 ms, each before the first block that begins no earlier.
    EXPECT_EQ(ticks, (std::vector<bool>{true, false, false, false, false, true, false, false, false,
                                        true}));
    EXPECT_FALSE(host.clock.WallClockTicks(host.now));
    // And the last before the block at 999.99 s: 24000 x 41.666 ms = 999.984 s.
    EXPECT_EQ(countOf(host.Play(99990, 1us, true)), 24000 + 1 - 3);

    ZStreamClock clock;
    for (const auto& [frames, isDue] : {std::pair{44100, true}, {10, true}, {10, false}})
        EXPECT_EQ(clock.BlockBegins(host.now, true, frames, kRate), isDue);
}

TEST(ZStreamClockTest, AStreamThatRunsAheadTicksUntilItIsInRealTimeAgain)
{
    SimulatedHost host;
    EXPECT_EQ(countOf(host.Play(100, 1us)), 0);
    EXPECT_TRUE(host.clock.WallClockTicks(host.now));
    EXPECT_EQ(countOf(host.Play(10, 1us)), 2) << "a second ahead";
    EXPECT_FALSE(host.clock.WallClockTicks(host.now));
    host.Play(100000, 1us);
    host.Play(120, 10ms);
    EXPECT_TRUE(host.clock.WallClockTicks(host.now));
    EXPECT_EQ(countOf(host.Play(100, 10ms)), 0);
    host.Play(100, 1us);
    host.clock.Restart();
    EXPECT_EQ(countOf(host.Play(100, 1us)), 0) << "a restart forgets the lead";
}

TEST(ZStreamClockTest, TheTimerTicksAgainOnceAStreamStops)
{
    SimulatedHost host;
    host.Play(10, 1us, true);
    EXPECT_FALSE(host.clock.WallClockTicks(host.now + ZStreamClock::kStopped));
    EXPECT_TRUE(host.clock.WallClockTicks(host.now + ZStreamClock::kStopped + 1ms));

    host.clock.Restart();  // as suspend and resume do
    EXPECT_TRUE(host.clock.WallClockTicks(host.now));
    EXPECT_EQ(host.Play(1, 1us, true), std::vector<bool>{true})
        << "an offline stream begins with a tick";
    EXPECT_EQ(host.Play(1, 1us, false), std::vector<bool>{false}) << "in real time again";
    EXPECT_TRUE(host.clock.WallClockTicks(host.now));
}
