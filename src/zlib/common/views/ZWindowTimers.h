// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

class ZHandler;

/// The timers of all windows of the process, each with the handler that it calls. They run on the
/// interface thread and keep it alive. [under the interface lock, any thread but the audio thread]
class ZWindowTimers
{
public:
    /// Sends the handler ZTIMER, field "TimerID", every period, until Stop or until the handler is
    /// destroyed. The period is cut to whole milliseconds, at least one. Ids are never reused.
    [[nodiscard]] static std::int64_t Start(std::int64_t microseconds, ZHandler& handler);
    /// The handler gets no message after the return. Ignores an unknown id.
    static void Stop(std::int64_t id);
    /// Returns how many timers run, including those of destroyed handlers that have not fired
    /// since.
    [[nodiscard]] static std::int32_t Count();
};

}  // namespace orvane
