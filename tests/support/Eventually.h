// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"

namespace orvane
{

inline void sleepForAMillisecond()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

/// How eventually() waits between two calls of its condition. A program whose tests hold the
/// interface lock sets a function that gives the lock up meanwhile.
inline void (*pauseOfEventually)() = sleepForAMillisecond;

/// Waits until the condition is true, for at most twenty seconds. Returns whether it became true.
template <typename Condition>
[[nodiscard]] bool eventually(const Condition& condition)
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        pauseOfEventually();
    }
    return true;
}

}  // namespace orvane
