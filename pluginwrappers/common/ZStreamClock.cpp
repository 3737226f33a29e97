// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZStreamClock.h"

#include <algorithm>
#include <cmath>

namespace orvane
{

namespace
{

constexpr double kTickSeconds = 41666e-6;

// The clocks of sound devices and of computers differ by a little, which adds up over hours, and
// blocks come in bursts. So the wall clock counts a quarter more: only a stream that is clearly
// faster gains on it, and one that falls back into step loses its lead.
constexpr double kWallWeight = 1.25;
// And no lead is greater than what a second in step takes away.
constexpr double kGreatestLeadSeconds = ZStreamClock::kLeadSeconds + 0.25;

double secondsOf(ZStreamClock::Clock::duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

}  // namespace

bool ZStreamClock::BlockBegins(Time now, bool offline, std::int32_t frames,
                               double sampleRate) noexcept
{
    Measure(now);
    mBlockSeconds = frames / sampleRate;
    const bool byStream = offline || mLeadSeconds > kLeadSeconds;
    const bool entered = byStream && !mByStream.load(std::memory_order_relaxed);
    mByStream.store(byStream, std::memory_order_relaxed);
    if (!byStream)
        return false;
    // What changed before the stream took over is in force from its first block on.
    if (entered)
        mSecondsToTick = 0.0;
    const bool due = mSecondsToTick <= 0.0;
    if (due)
        mSecondsToTick += kTickSeconds * (std::floor(-mSecondsToTick / kTickSeconds) + 1.0);
    mSecondsToTick -= mBlockSeconds;
    return due;
}

void ZStreamClock::Measure(Time now) noexcept
{
    const Time last{Clock::duration(mLastBlock.load(std::memory_order_relaxed))};
    mLastBlock.store(now.time_since_epoch().count(), std::memory_order_relaxed);
    // Looked at first, since an exchange costs as much as many loads.
    if (mRestarted.load(std::memory_order_relaxed) &&
        mRestarted.exchange(false, std::memory_order_relaxed))
    {
        mLeadSeconds = 0.0;
        return;
    }
    const double gained = mBlockSeconds - kWallWeight * secondsOf(now - last);
    mLeadSeconds = std::clamp(mLeadSeconds + gained, 0.0, kGreatestLeadSeconds);
}

bool ZStreamClock::WallClockTicks(Time now) const noexcept
{
    if (!mByStream.load(std::memory_order_relaxed))
        return true;
    const Time last{Clock::duration(mLastBlock.load(std::memory_order_relaxed))};
    return now - last > kStopped;
}

void ZStreamClock::Restart() noexcept
{
    mRestarted.store(true, std::memory_order_relaxed);
    mByStream.store(false, std::memory_order_relaxed);
}

}  // namespace orvane
