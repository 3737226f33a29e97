// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Holds the interface lock for the life of the object. One recursive lock a process: whoever
/// touches documents, bays, views, commands or windows holds it - the interface thread around each
/// event it delivers, the host shell around each call that is not an audio call. The audio path
/// never does. Fair: threads get it in the order they asked, so that a busy interface cannot starve
/// the host. [any thread but the audio thread]
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

/// Gives up the interface lock wholly for the life of the object, however often the thread holds
/// it, and takes it back as often. Does nothing on a thread that does not hold it. Stands around
/// whatever may wait for another thread: calls of the host, waiting for events, joining a thread.
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
