// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZPipeSignalBlock.h"

#include <cerrno>
#include <ctime>

namespace orvane
{

namespace
{

sigset_t pipeSignal()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

}  // namespace

ZPipeSignalBlock::ZPipeSignalBlock()
{
    sigset_t pending;
    sigpending(&pending);
    mWasPending = sigismember(&pending, SIGPIPE) == 1;
    const sigset_t pipe = pipeSignal();
    pthread_sigmask(SIG_BLOCK, &pipe, &mBefore);
}

// Consumes a signal that a write raised while it was blocked.
ZPipeSignalBlock::~ZPipeSignalBlock()
{
    const sigset_t pipe = pipeSignal();
    const timespec none{};
    while (!mWasPending && sigtimedwait(&pipe, nullptr, &none) < 0 && errno == EINTR) {
    }
    pthread_sigmask(SIG_SETMASK, &mBefore, nullptr);
}

}  // namespace orvane
