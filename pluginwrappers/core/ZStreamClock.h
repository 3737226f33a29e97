// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace orvane
{

/// Decides which clock drives an instance's ticks, in which changed values reach the engine.
///
/// While a host plays in real time, the interface thread's timer ticks, so that the work of a tick
/// does not burden the audio thread. While a host renders faster than real time, the timer would
/// apply a change at another sample in each render; then the stream ticks, once every 41.666 ms of
/// audio, and the timer does not. A stream counts as rendered when the host says so, or once it is
/// more than a second ahead of the wall clock. When the stream stops, the timer ticks again.
///
/// Callers pass the time in, so that tests can choose it.
class ZStreamClock
{
public:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    /// A stream that the host does not call offline ticks once it is this far ahead.
    static constexpr double kLeadSeconds = 1.0;
    /// A stream without a block for longer than this has stopped.
    static constexpr std::chrono::seconds kStopped{2};

    /// Called before the passes of each block; returns true when the stream has to tick now.
    /// frames > 0, sampleRate > 0 in Hz; offline: what the host says. [audio thread]
    [[nodiscard]] bool BlockBegins(Time now, bool offline, std::int32_t frames,
                                   double sampleRate) noexcept;
    /// Returns whether the timer has to tick. [interface thread]
    [[nodiscard]] bool WallClockTicks(Time now) const noexcept;
    /// Forgets how far the stream is ahead: a stream has ended or is about to begin. [any thread]
    void Restart() noexcept;

private:
    void MeasureLead(Time now) noexcept;

    std::atomic<bool> mByStream{false};     // written by the audio thread and by Restart
    std::atomic<bool> mRestarted{true};     // set by Restart, cleared by the audio thread
    std::atomic<Clock::rep> mLastBlock{0};  // written by the audio thread

    // Used by the audio thread only.
    double mLeadSeconds = 0.0;   // how far the stream is ahead of the wall clock
    double mBlockSeconds = 0.0;  // length of the previous block
    double mSecondsToTick = 0.0;
};

}  // namespace orvane
