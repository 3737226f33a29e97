// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <signal.h>

namespace orvane
{

/// Keeps SIGPIPE from the calling thread for the life of the object, whatever the thread writes to
/// a socket whose other end is gone: XCB writes as it likes, and the signal would end the host. The
/// host's own handlers and masks are as before afterwards.
class ZPipeSignalBlock
{
public:
    ZPipeSignalBlock();
    ZPipeSignalBlock(const ZPipeSignalBlock&) = delete;
    ZPipeSignalBlock& operator=(const ZPipeSignalBlock&) = delete;
    ~ZPipeSignalBlock();

private:
    bool mWasPending = false;
    sigset_t mBefore{};
};

}  // namespace orvane
