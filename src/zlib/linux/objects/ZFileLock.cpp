// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZFileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>
#include <thread>

namespace orvane
{

ZFileLock::ZFileLock(const std::string& path, std::chrono::milliseconds limit)
{
    assert(!path.empty());
    using Clock = std::chrono::steady_clock;
    const int handle = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
    if (handle == -1)
        return;
    // Asks again and again: a wait inside flock has no limit, and the owner may be suspended.
    const auto end = Clock::now() + limit;
    while (flock(handle, LOCK_EX | LOCK_NB) != 0) {
        if ((errno != EWOULDBLOCK && errno != EINTR) || Clock::now() >= end) {
            close(handle);
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    mHandle = handle;
}

ZFileLock::~ZFileLock()
{
    if (mHandle != kNone)
        close(mHandle);
}

}  // namespace orvane
