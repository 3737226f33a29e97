// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZSemaphore.h"

#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <cassert>
#include <chrono>

namespace orvane
{

ZSemaphore::ZSemaphore(std::string_view name, std::int32_t initialCount)
    : mName(name)
    , mCount(initialCount)
{
    if (initialCount < 0)
        throw ZException("CreateSemaphore failed");
}

std::int32_t ZSemaphore::Wait()
{
    std::unique_lock lock(mMutex);
    mReleased.wait(lock, [this] { return mCount > 0; });
    assert(mCount > 0);
    --mCount;
    return 0;
}

std::int32_t ZSemaphore::Wait(std::int32_t microseconds)
{
    const std::chrono::milliseconds limit(std::max(microseconds, 0) / 1000);
    std::unique_lock lock(mMutex);
    if (!mReleased.wait_for(lock, limit, [this] { return mCount > 0; }))
        return 1;
    --mCount;
    return 0;
}

std::int32_t ZSemaphore::Release()
{
    const std::lock_guard lock(mMutex);
    if (mCount == kMaxCount)
        return -1;
    ++mCount;
    // Under the lock: the waiting thread may destroy the semaphore as soon as it has its count.
    mReleased.notify_one();
    return 0;
}

}  // namespace orvane
