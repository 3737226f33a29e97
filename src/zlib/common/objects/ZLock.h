// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZSemaphore.h"

#include <string_view>

namespace orvane
{

/// A named lock: a semaphore of count 1. It is not recursive and has no owner, so one thread must
/// not take it twice. lock and unlock have the names that std::lock_guard calls.
/// [any thread but the audio thread]
class ZLock
{
public:
    explicit ZLock(std::string_view name)
        : mSemaphore(name, 1)
    {
    }

    void lock() { mSemaphore.Wait(); }
    void unlock() { mSemaphore.Release(); }

private:
    ZSemaphore mSemaphore;
};

}  // namespace orvane
