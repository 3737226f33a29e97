#include "zlib/common/ZBrowserLaunch.h"

#include <cerrno>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane
{

namespace
{

/// What a program of the desktop's starts with: no signal blocked, whatever this thread blocks, and
/// none of the host's files.
class SpawnSettings
{
public:
    SpawnSettings()
    {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
        posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDOUT_FILENO);
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

void ZBrowserLaunch::OpenAddress(void* launch)
{
    std::string address = static_cast<ZBrowserLaunch*>(launch)->mAddress;
    // setsid forks and ends at once, so the opener is no child of the host's: nobody has to wait
    // for it, and some openers stay for as long as the browser does.
    std::string program = "setsid";
    std::string option = "--fork";
    std::string opener = "xdg-open";
    char* const arguments[] = {program.data(), option.data(), opener.data(), address.data(),
                               nullptr};
    const SpawnSettings settings;
    pid_t child = 0;
    if (posix_spawnp(&child, program.c_str(), &settings.actions, &settings.attributes, arguments,
                     environ) != 0)
        return;
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace orvane
