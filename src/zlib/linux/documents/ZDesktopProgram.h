// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace orvane
{

/// A program of the desktop, such as a file dialog, run as a child process. It starts with no
/// signals blocked and without the host's open files. [any thread but the audio thread]
class ZDesktopProgram
{
public:
    /// Starts the program that the first argument names, searched for in PATH. The descriptor
    /// output becomes its standard output; -1 discards what it writes.
    explicit ZDesktopProgram(std::vector<std::string> arguments, int output = -1);
    ZDesktopProgram(const ZDesktopProgram&) = delete;
    ZDesktopProgram& operator=(const ZDesktopProgram&) = delete;
    /// Waits for the program's end.
    ~ZDesktopProgram();

    /// False when there is no such program or it could not be started.
    [[nodiscard]] bool HasStarted() const { return mProcess > 0; }
    /// Ends the program by SIGKILL.
    void Kill() const;

private:
    pid_t mProcess = 0;
};

}  // namespace orvane
