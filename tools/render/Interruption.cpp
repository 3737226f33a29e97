// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/Interruption.h"

#include <atomic>
#include <csignal>
#include <initializer_list>

namespace orvane
{

namespace
{

// Written by the signal handler, read by every rendering thread.
std::atomic<int> signalSeen{0};
static_assert(std::atomic<int>::is_always_lock_free);

void remember(int signal)
{
    signalSeen = signal;
}

}  // namespace

void watchForInterruption()
{
    struct sigaction action
    {
    };
    action.sa_handler = remember;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
}

void throwIfInterrupted()
{
    if (const int signal = signalSeen; signal != 0)
        throw Interruption{signal};
}

}  // namespace orvane
