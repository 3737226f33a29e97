// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace orvane
{

/// A named counting semaphore. It consists of a mutex and a condition variable, because the
/// time-out of a POSIX semaphore uses the wall clock, which may jump. [any thread but the audio
/// thread]
class ZSemaphore
{
public:
    static constexpr std::int32_t kMaxCount = 0x7fffffff;

    /// Throws ZException when the initial count is negative.
    ZSemaphore(std::string_view name, std::int32_t initialCount);
    ZSemaphore(const ZSemaphore&) = delete;
    ZSemaphore& operator=(const ZSemaphore&) = delete;

    /// Waits until the count is above 0 and takes one. Returns 0.
    std::int32_t Wait();
    /// The same with a time limit, in whole milliseconds, rounded down: below 1000 microseconds it
    /// does not wait. Returns 0, or 1 when the time has run out.
    [[nodiscard]] std::int32_t Wait(std::int32_t microseconds);
    /// Adds one to the count. Returns 0, or -1 when the count is at its maximum.
    std::int32_t Release();

    [[nodiscard]] const std::string& GetName() const { return mName; }

private:
    const std::string mName;
    std::mutex mMutex;
    std::condition_variable mReleased;
    std::int32_t mCount;  // guarded by mMutex
};

}  // namespace orvane
