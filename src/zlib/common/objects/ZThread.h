// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace orvane
{

/// A named thread that is made suspended and runs one function. It takes no signals: those belong
/// to the host's threads. An exception that leaves the function is reported and ends the thread.
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

    /// Makes the thread, suspended. Throws ZException -1 "CreateThread failed".
    /// The system shows the first 15 bytes of the name.
    ZThread(std::string_view name, Function function, void* argument);
    ZThread(const ZThread&) = delete;
    ZThread& operator=(const ZThread&) = delete;
    /// Waits until the function has returned, since no thread may outlive the library's code. A
    /// thread that was never resumed ends without calling it; one that destroys its own object goes
    /// on by itself. Give up the interface lock first.
    ~ZThread();

    /// Starts the function. A second call does nothing.
    void Resume();
    /// Takes effect at once, also on a suspended thread. Where the user may not have the priority
    /// that is asked for, the thread gets the nearest that is granted.
    void SetPriority(Priority priority);
    [[nodiscard]] Priority GetPriority() const;
    [[nodiscard]] bool IsRunning() const;
    /// Waits until the thread has ended, -1 without limit: 0, 1 when the time ran out, or -1 when
    /// it was never resumed or is the caller itself. In whole milliseconds, rounded down.
    [[nodiscard]] std::int32_t Join(std::int32_t microseconds);

private:
    struct State;

    std::shared_ptr<State> mState;  // shared with the thread, which may outlive this object
};

}  // namespace orvane
