// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Holds the interface lock for the life of the object. The lock is recursive, and there is one per
/// process. Code that uses documents, bays, views, commands or windows holds it: the interface
/// thread takes it around each event that it delivers, the host shell around each call that is not
/// an audio call. The audio path never takes it. Threads get the lock in the order in which they
/// ask for it, so that a busy interface cannot starve the host. [any thread but the audio thread]
class ZInterfaceLock
{
public:
    ZInterfaceLock();
    ZInterfaceLock(const ZInterfaceLock&) = delete;
    ZInterfaceLock& operator=(const ZInterfaceLock&) = delete;
    ~ZInterfaceLock();

    /// True when the calling thread holds the lock. Costs one atomic load, so any function may
    /// assert it. [any thread]
    [[nodiscard]] static bool IsHeld();
};

/// Releases the interface lock for the life of the object, at whatever depth the thread holds it,
/// and then takes it back to the same depth. Does nothing on a thread that does not hold the lock.
/// Code that may wait for another thread does so inside this scope: it calls the host, waits for
/// events or joins a thread. [any thread but the audio thread]
class ZInterfaceUnlock
{
public:
    ZInterfaceUnlock();
    ZInterfaceUnlock(const ZInterfaceUnlock&) = delete;
    ZInterfaceUnlock& operator=(const ZInterfaceUnlock&) = delete;
    ~ZInterfaceUnlock();

private:
    const int mDepth;
};

}  // namespace orvane
