// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Thrown after the user has interrupted the program, so that unfinished files are removed.
struct Interruption
{
    int signal;
};

/// Installs handlers that record the first SIGINT, SIGTERM or SIGHUP; a second one ends the program
/// at once. [setup]
void watchForInterruption();
/// Throws Interruption if a signal was recorded. [any thread]
void throwIfInterrupted();

}  // namespace orvane
