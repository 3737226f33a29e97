// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/Interruption.h"

#include <csignal>
#include <initializer_list>

namespace orvane
{

namespace
{

volatile std::sig_atomic_t signalSeen = 0;  // written by the handler

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
    if (signalSeen != 0)
        throw Interruption{signalSeen};
}

}  // namespace orvane
