// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace orvane
{

/// Decides by which clock an instance's ticks come: those that take changed values to the engine.
///
/// A host that plays ticks by the wall clock, so that nothing of it burdens the audio thread. A
/// host that renders faster than time would hear a change at another sample each time; there the
/// stream itself is the clock, one tick every 41.666 ms of audio, and the wall clock's are left
/// out. It is known by what the host says, or by a stream that has run ahead of the wall clock by
/// more than a second. A stream that stops gives the ticks back to the wall clock.
///
/// The time is handed in, so that it can be made up.
class ZStreamClock
{
public:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    /// How far a stream that nobody calls offline gets ahead before it counts as such.
    static constexpr double kLeadSeconds = 1.0;
    /// A stream without a block for that long has stopped.
    static constexpr std::chrono::seconds kStopped{2};

    /// Before a block's passes: true when a tick of the stream is due. frames > 0, sampleRate > 0
    /// in Hz; offline: what the host says. [audio thread]
    [[nodiscard]] bool BlockBegins(Time now, bool offline, std::int32_t frames,
                                   double sampleRate) noexcept;
    /// True when a tick of the wall clock is to be taken. [interface thread]
    [[nodiscard]] bool WallClockTicks(Time now) const noexcept;
    /// The stream ends, or is about to begin. [any thread]
    void Restart() noexcept;

private:
    void Measure(Time now) noexcept;

    std::atomic<bool> mByStream{false};
    std::atomic<bool> mRestarted{true};
    std::atomic<Clock::rep> mLastBlock{0};  // written by the audio thread

    // The audio thread's own.
    double mLeadSeconds = 0.0;   // of the stream before the wall clock
    double mBlockSeconds = 0.0;  // of the block before
    double mSecondsToTick = 0.0;
};

}  // namespace orvane
