// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZInterfaceLock.h"

#include "zlib/common/objects/ZNeverDestroyed.h"

#include <cassert>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace orvane
{

namespace
{

/// A ticket lock with an owner and a depth.
class FairRecursiveLock
{
public:
    void Take(int depth)
    {
        std::unique_lock lock(mMutex);
        if (IsOwner()) {
            mDepth += depth;
            return;
        }
        const std::uint64_t ticket = mNextTicket++;
        mTurn.wait(lock, [&] { return ticket == mServed; });
        mOwner = std::this_thread::get_id();
        mDepth = depth;
    }

    void Release(int depth)
    {
        const std::lock_guard lock(mMutex);
        assert(IsOwner() && mDepth >= depth);
        mDepth -= depth;
        if (mDepth > 0)
            return;
        mOwner = {};
        ++mServed;
        mTurn.notify_all();
    }

    int Depth()
    {
        const std::lock_guard lock(mMutex);
        return IsOwner() ? mDepth : 0;
    }

private:
    bool IsOwner() const { return mDepth > 0 && mOwner == std::this_thread::get_id(); }

    std::mutex mMutex;  // guards all below
    std::condition_variable mTurn;
    std::uint64_t mNextTicket = 0;
    std::uint64_t mServed = 0;  // the ticket whose turn it is
    std::thread::id mOwner;
    int mDepth = 0;
};

// Never destroyed: the interface thread of an instance that was never closed may still use it while
// the process ends.
FairRecursiveLock& theLock()
{
    static const ZNeverDestroyed<FairRecursiveLock> lock;
    return *lock;
}

}  // namespace

ZInterfaceLock::ZInterfaceLock()
{
    theLock().Take(1);
}

ZInterfaceLock::~ZInterfaceLock()
{
    theLock().Release(1);
}

bool ZInterfaceLock::IsHeld()
{
    return theLock().Depth() > 0;
}

ZInterfaceUnlock::ZInterfaceUnlock()
    : mDepth(theLock().Depth())
{
    if (mDepth > 0)
        theLock().Release(mDepth);
}

ZInterfaceUnlock::~ZInterfaceUnlock()
{
    if (mDepth > 0)
        theLock().Take(mDepth);
}

}  // namespace orvane
