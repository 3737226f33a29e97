// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace orvane
{

/// A program of the desktop, such as a file dialog, run as a child process. It starts with no
/// signals blocked and without the host's open files. A host may reap any child of its process, so
/// the program is known by a descriptor (pidfd) instead of its number, which another process may
/// have by then. [any thread but the audio thread]
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
    /// Ends the program by SIGKILL; does nothing when it has ended.
    void Kill() const;

private:
    [[nodiscard]] bool IsOurChild() const;

    pid_t mProcess = 0;
    int mDescriptor = -1;  // of the process; -1 where the kernel gives none
};

/// True when the environment names a display. [any thread]
[[nodiscard]] bool hasDisplay();
/// Returns the path of an executable file in PATH; no value when there is none. Relative folders in
/// PATH are skipped. [any thread but the audio thread]
[[nodiscard]] std::optional<std::string> findProgram(const std::string& name);

}  // namespace orvane
