#pragma once

#include <chrono>
#include <thread>

namespace orvane
{

/// Waits until the condition holds, for ten seconds at most; whether it does.
template <typename Condition>
[[nodiscard]] bool eventually(const Condition& condition)
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (!condition() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(1ms);
    return condition();
}

}  // namespace orvane
