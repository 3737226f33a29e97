// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace orvane
{

/// A named thread that is made suspended and runs one function. It blocks all signals, which belong
/// to the host's threads. An exception that the function throws is reported and ends the thread.
class ZThread
{
public:
    using Function = void (*)(void* argument);

    enum Priority : std::int32_t
    {
        kIdle = 0,
        kBelowNormal = 1,
        kNormal = 2,
        kAboveNormal = 3,
        kHighest = 4,
        kTimeCritical = 5,
    };

    /// Makes the thread, suspended. The system shows the first 15 bytes of the name. Throws
    /// ZException "CreateThread failed" when the system refuses. [any thread but the audio thread]
    ZThread(std::string_view name, Function function, void* argument);
    ZThread(const ZThread&) = delete;
    ZThread& operator=(const ZThread&) = delete;
    /// Waits until the function has returned, because no thread may outlive the library's code. A
    /// thread that was never resumed ends without calling it. A thread that destroys its own object
    /// is detached. The caller must not hold the interface lock.
    ~ZThread();

    /// Starts the function. A second call does nothing. [any thread]
    void Resume();
    /// Takes effect at once, also on a suspended thread. When the user may not have the requested
    /// priority, the thread gets the nearest one that the system grants. [any thread]
    void SetPriority(Priority priority);
    /// True from Resume until the function has returned. [any thread]
    [[nodiscard]] bool IsRunning() const;
    /// Waits until the thread has ended, -1 without limit. The time counts in whole milliseconds,
    /// rounded down. Returns 0, or 1 when the time has run out, or -1 for a thread that was never
    /// resumed or is the caller's own. [any thread but the audio thread]
    [[nodiscard]] std::int32_t Join(std::int32_t microseconds);

private:
    struct State;

    std::shared_ptr<State> mState;  // shared with the thread, which may outlive this object
};

}  // namespace orvane
