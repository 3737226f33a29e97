// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/documents/ZDesktopProgram.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace orvane
{

namespace
{

/// The file actions and attributes for posix_spawn.
class SpawnSettings
{
public:
    explicit SpawnSettings(int output)
    {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
        posix_spawn_file_actions_adddup2(&actions, output < 0 ? STDIN_FILENO : output,
                                         STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDERR_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
        posix_spawnattr_init(&attributes);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings()
    {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
    }

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
};

bool isSet(const char* variable)
{
    const char* const value = std::getenv(variable);
    return value && *value;
}

}  // namespace

bool hasDisplay()
{
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

std::optional<std::string> findProgram(const std::string& name)
{
    assert(!name.empty() && name.find('/') == std::string::npos);
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path ? path : "/usr/local/bin:/usr/bin:/bin");
    for (std::string folder; std::getline(folders, folder, ':');) {
        const std::string program = folder + "/" + name;
        if (folder.starts_with('/') && access(program.c_str(), X_OK) == 0)
            return program;
    }
    return std::nullopt;
}

ZDesktopProgram::ZDesktopProgram(std::vector<std::string> arguments, int output)
{
    assert(!arguments.empty());
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    const SpawnSettings settings(output);
    if (posix_spawnp(&mProcess, pointers[0], &settings.actions, &settings.attributes,
                     pointers.data(), environ) != 0)
        mProcess = 0;
    if (HasStarted())
        mDescriptor = static_cast<int>(syscall(SYS_pidfd_open, mProcess, 0));
}

ZDesktopProgram::~ZDesktopProgram()
{
    if (!HasStarted())
        return;
    // Without a descriptor the number is safe to wait for: the kernel gives it to no other child of
    // this process before the wait returns, and says so when somebody else has waited.
    siginfo_t ended{};
    const auto kind = mDescriptor >= 0 ? static_cast<idtype_t>(P_PIDFD) : P_PID;
    const auto id = static_cast<id_t>(mDescriptor >= 0 ? mDescriptor : mProcess);
    while (waitid(kind, id, &ended, WEXITED) < 0 && errno == EINTR) {
    }
    if (mDescriptor >= 0)
        close(mDescriptor);
}

bool ZDesktopProgram::IsOurChild() const
{
    assert(HasStarted());
    siginfo_t ended{};
    return waitid(P_PID, static_cast<id_t>(mProcess), &ended, WEXITED | WNOHANG | WNOWAIT) == 0;
}

void ZDesktopProgram::Kill() const
{
    if (!HasStarted())
        return;
    if (mDescriptor >= 0)
        syscall(SYS_pidfd_send_signal, mDescriptor, SIGKILL, nullptr, 0);
    else if (IsOurChild())
        kill(mProcess, SIGKILL);
}

}  // namespace orvane
