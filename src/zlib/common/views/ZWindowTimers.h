// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

class ZHandler;

/// The timers of all windows of the process: which handler each one calls. They run on the
/// interface thread, which each of them holds. [under the interface lock, any thread but the audio
/// thread]
class ZWindowTimers
{
public:
    /// Calls the handler with ZTIMER, field "TimerID", every period, in whole milliseconds and at
    /// least one, until Stop or until the handler dies. The id is never given again.
    [[nodiscard]] static std::int64_t Start(std::int64_t microseconds, ZHandler& handler);
    /// No call comes after the return. An unknown id does nothing.
    static void Stop(std::int64_t id);
    /// Timers that run, those of handlers that have died included until they would fire.
    [[nodiscard]] static std::int32_t Count();
};

}  // namespace orvane
