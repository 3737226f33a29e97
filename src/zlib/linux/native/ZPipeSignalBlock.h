// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <signal.h>

namespace orvane
{

/// Suppresses SIGPIPE in the calling thread while it lives. XCB writes to a socket whose other end
/// may be closed, and the signal would end the host. The host's handlers and signal mask are
/// unchanged afterwards. [any thread]
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
