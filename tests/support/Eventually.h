// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <thread>

namespace orvane
{

/// Waits until the condition is true, for at most twenty seconds. Returns whether it became true.
template <typename Condition>
[[nodiscard]] bool eventually(const Condition& condition)
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

}  // namespace orvane
