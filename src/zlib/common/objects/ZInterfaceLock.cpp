// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZInterfaceLock.h"

#include "zlib/common/objects/ZNeverDestroyed.h"

#include <atomic>
#include <cassert>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace orvane
{

namespace
{

/// A ticket lock with an owner and a depth. The owner enters and asks without touching the mutex.
class FairRecursiveLock
{
public:
    void Take(int depth)
    {
        assert(depth > 0);
        if (!IsOwner()) {
            std::unique_lock lock(mMutex);
            const std::uint64_t ticket = mNextTicket++;
            mTurn.wait(lock, [&] { return ticket == mServed; });
            mOwner.store(std::this_thread::get_id(), std::memory_order_relaxed);
        }
        mDepth += depth;
    }

    void Release(int depth)
    {
        assert(IsOwner() && depth > 0 && mDepth >= depth);
        mDepth -= depth;
        if (mDepth > 0)
            return;
        mOwner.store({}, std::memory_order_relaxed);
        const std::lock_guard lock(mMutex);
        ++mServed;
        mTurn.notify_all();
    }

    int Depth() const { return IsOwner() ? mDepth : 0; }

    // Relaxed is enough: a thread reads its own id only if it stored it and has not cleared it.
    bool IsOwner() const
    {
        return mOwner.load(std::memory_order_relaxed) == std::this_thread::get_id();
    }

private:
    std::atomic<std::thread::id> mOwner{};
    int mDepth = 0;  // read and written by the owner only

    std::mutex mMutex;  // guards all below
    std::condition_variable mTurn;
    std::uint64_t mNextTicket = 0;
    std::uint64_t mServed = 0;  // the ticket whose turn it is
};

// Never destroyed: if the host never closes an instance, its interface thread may still use the
// lock while the process ends.
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
    return theLock().IsOwner();
}

ZInterfaceUnlock::ZInterfaceUnlock()
    : mDepth(theLock().Depth())
{
    if (mDepth > 0)
        theLock().Release(mDepth);
}

ZInterfaceUnlock::~ZInterfaceUnlock()
{
    assert(!theLock().IsOwner());
    if (mDepth > 0)
        theLock().Take(mDepth);
}

}  // namespace orvane
