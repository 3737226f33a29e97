// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <string>

namespace orvane
{

/// Holds an exclusive lock on a lock file for the life of the object, so that threads and processes
/// take turns. The system releases the lock when a process ends. The lock file stays.
/// [any thread but the audio thread]
class ZFileLock
{
public:
    /// Makes the lock file at path if it is missing and waits for the lock, at most for the limit.
    ZFileLock(const std::string& path, std::chrono::milliseconds limit);
    ZFileLock(const ZFileLock&) = delete;
    ZFileLock& operator=(const ZFileLock&) = delete;
    ~ZFileLock();

    /// False when the limit has passed, or when the file system has no locks.
    [[nodiscard]] bool IsHeld() const { return mHandle != kNone; }

private:
    static constexpr int kNone = -1;

    int mHandle = kNone;  // the open lock file while the lock is held
};

}  // namespace orvane
