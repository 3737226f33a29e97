// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace orvane
{

/// A named counting semaphore. [any thread but where waiting is forbidden]
/// Made of a mutex and a condition variable, since the system's own semaphore measures its time-out
/// on the wall clock, which may jump.
class ZSemaphore
{
public:
    static constexpr std::int32_t kMaxCount = 0x7fffffff;

    /// Throws ZException -1 when the initial count is negative.
    ZSemaphore(std::string_view name, std::int32_t initialCount);
    ZSemaphore(const ZSemaphore&) = delete;
    ZSemaphore& operator=(const ZSemaphore&) = delete;

    /// Takes one count, however long that takes. 0.
    std::int32_t Wait();
    /// Takes one count: 0, or 1 when the time ran out. Counted in whole milliseconds, rounded down,
    /// so less than 1000 microseconds only looks.
    [[nodiscard]] std::int32_t Wait(std::int32_t microseconds);
    /// Gives one count: 0, or -1 when the count is at its maximum.
    std::int32_t Release();

    [[nodiscard]] const std::string& GetName() const { return mName; }

private:
    const std::string mName;
    std::mutex mMutex;
    std::condition_variable mReleased;
    std::int32_t mCount;  // guarded by mMutex
};

}  // namespace orvane
