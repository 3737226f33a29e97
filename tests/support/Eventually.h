// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <thread>

namespace orvane
{

/// Asks until the condition holds, for twenty seconds at most; whether it came to hold. It is not
/// asked again after that.
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
