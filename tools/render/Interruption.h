// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Thrown where the user has broken the run off, so that what is half done is cleared away.
struct Interruption
{
    int signal;
};

/// From now on the first SIGINT, SIGTERM or SIGHUP is only remembered; a second one ends the
/// program at once.
void watchForInterruption();
/// Throws Interruption once such a signal has come.
void throwIfInterrupted();

}  // namespace orvane
