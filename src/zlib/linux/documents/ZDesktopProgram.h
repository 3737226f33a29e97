// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace orvane
{

/// A program of the desktop's that this process starts and waits for. It has no signal blocked,
/// whatever this thread blocks, and none of the host's files. [any thread but the audio thread]
class ZDesktopProgram
{
public:
    /// Starts the program that the first argument names, as the shell would find it. output takes
    /// what it writes; -1 for nobody.
    explicit ZDesktopProgram(std::vector<std::string> arguments, int output = -1);
    ZDesktopProgram(const ZDesktopProgram&) = delete;
    ZDesktopProgram& operator=(const ZDesktopProgram&) = delete;
    /// Waits for its end.
    ~ZDesktopProgram();

    /// False when there is no such program, or it could not be started.
    [[nodiscard]] bool HasStarted() const { return mProcess > 0; }
    /// Ends it whatever it is at.
    void Kill() const;

private:
    pid_t mProcess = 0;
};

}  // namespace orvane
