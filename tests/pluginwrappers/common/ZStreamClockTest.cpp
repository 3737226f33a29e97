// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZStreamClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace orvane
{

using namespace std::chrono_literals;

namespace
{

constexpr std::int32_t kFrames = 441;  // 10 ms
constexpr double kRate = 44100.0;

/// A host with a simulated wall clock.
class SimulatedHost
{
public:
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
    static int CountOf(const std::vector<bool>& ticks)
    {
        return static_cast<int>(std::count(ticks.begin(), ticks.end(), true));
    }

    ZStreamClock clock;
    ZStreamClock::Time now{1000s};
};

}  // namespace

TEST(ZStreamClockTest, TheTimerTicksWhileAHostPlaysInRealTime)
{
    SimulatedHost host;
    EXPECT_TRUE(host.clock.WallClockTicks(host.now));
    EXPECT_EQ(SimulatedHost::CountOf(host.Play(3000, 10ms)), 0);
    // A day on a sound device that runs a thousandth fast, its blocks in bursts of eight.
    for (int i = 0; i < 24 * 3600 * 100 / 8; ++i) {
        const auto burst = host.Play(7, 0ms);
        ASSERT_EQ(SimulatedHost::CountOf(burst) + SimulatedHost::CountOf(host.Play(1, 79920us)), 0);
    }
    EXPECT_TRUE(host.clock.WallClockTicks(host.now));
}

TEST(ZStreamClockTest, AnOfflineStreamTicksAtItsFirstBlockAndEvery41MsOfAudio)
{
    SimulatedHost host;
    const std::vector<bool> ticks = host.Play(10, 30us, /*offline*/ true);
    // Due at 0, 41.7 and 83.3 ms, each before the first block that begins no earlier.
    EXPECT_EQ(ticks, (std::vector<bool>{true, false, false, false, false, true, false, false, false,
                                        true}));
    EXPECT_FALSE(host.clock.WallClockTicks(host.now));
    // And the last before the block at 999.99 s: 24000 x 41.666 ms = 999.984 s.
    EXPECT_EQ(SimulatedHost::CountOf(host.Play(99990, 1us, true)), 24000 + 1 - 3);
    SimulatedHost slow;
    EXPECT_EQ(slow.Play(10, 300ms, true), ticks) << "whatever the pace";
}

TEST(ZStreamClockTest, ABlockLongerThanATickTicksOnce)
{
    ZStreamClock clock;
    const ZStreamClock::Time now{1s};
    EXPECT_TRUE(clock.BlockBegins(now, true, 44100, kRate));
    EXPECT_TRUE(clock.BlockBegins(now, true, 10, kRate));
    EXPECT_FALSE(clock.BlockBegins(now, true, 10, kRate));
}

TEST(ZStreamClockTest, AStreamThatRunsAheadTicksUntilItIsInRealTimeAgain)
{
    SimulatedHost host;
    EXPECT_EQ(SimulatedHost::CountOf(host.Play(100, 1us)), 0);
    EXPECT_TRUE(host.clock.WallClockTicks(host.now));
    EXPECT_EQ(SimulatedHost::CountOf(host.Play(10, 1us)), 2) << "a second ahead";
    EXPECT_FALSE(host.clock.WallClockTicks(host.now));
    host.Play(100000, 1us);
    host.Play(120, 10ms);
    EXPECT_TRUE(host.clock.WallClockTicks(host.now));
    EXPECT_EQ(SimulatedHost::CountOf(host.Play(100, 10ms)), 0);
    host.Play(100, 1us);
    host.clock.Restart();
    EXPECT_EQ(SimulatedHost::CountOf(host.Play(100, 1us)), 0) << "a restart forgets the lead";
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

}  // namespace orvane
