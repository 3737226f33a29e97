// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/ZStreamClock.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr double kTickSeconds = 41666e-6;

// Wall time counts 1.25 times when the lead is measured. The clock of a sound device differs a
// little from the computer's, which adds up over hours, and blocks arrive in bursts: with the
// weight, only a stream that is clearly faster gains a lead, and one in real time loses it again.
constexpr double kWallWeight = 1.25;
// Limits the lead so that a stream in real time falls below kLeadSeconds within a second.
constexpr double kMaxLeadSeconds = ZStreamClock::kLeadSeconds + 0.25;

double secondsOf(ZStreamClock::Clock::duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

}  // namespace

bool ZStreamClock::BlockBegins(Time now, bool offline, std::int32_t frames,
                               double sampleRate) noexcept
{
    assert(frames > 0 && sampleRate > 0.0);
    MeasureLead(now);
    mBlockSeconds = frames / sampleRate;
    const bool byStream = offline || mLeadSeconds > kLeadSeconds;
    const bool entered = byStream && !mByStream.load(std::memory_order_relaxed);
    mByStream.store(byStream, std::memory_order_relaxed);
    if (!byStream)
        return false;
    // A stream that has just become the clock ticks at once, so that earlier changes apply.
    if (entered)
        mSecondsToTick = 0.0;
    const bool due = mSecondsToTick <= 0.0;
    if (due)
        mSecondsToTick += kTickSeconds * (std::floor(-mSecondsToTick / kTickSeconds) + 1.0);
    mSecondsToTick -= mBlockSeconds;
    return due;
}

void ZStreamClock::MeasureLead(Time now) noexcept
{
    const Time last{Clock::duration(mLastBlock.load(std::memory_order_relaxed))};
    mLastBlock.store(now.time_since_epoch().count(), std::memory_order_relaxed);
    // Loaded first, since an exchange is much slower than a load.
    if (mRestarted.load(std::memory_order_relaxed) &&
        mRestarted.exchange(false, std::memory_order_relaxed))
    {
        mLeadSeconds = 0.0;
        return;
    }
    const double gained = mBlockSeconds - kWallWeight * secondsOf(now - last);
    mLeadSeconds = std::clamp(mLeadSeconds + gained, 0.0, kMaxLeadSeconds);
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
