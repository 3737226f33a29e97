// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/documents/ZDesktopProgram.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>

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

}  // namespace

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
}

ZDesktopProgram::~ZDesktopProgram()
{
    if (!HasStarted())
        return;
    while (waitpid(mProcess, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void ZDesktopProgram::Kill() const
{
    if (HasStarted())
        kill(mProcess, SIGKILL);
}

}  // namespace orvane
