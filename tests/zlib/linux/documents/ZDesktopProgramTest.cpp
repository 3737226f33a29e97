// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/documents/ZDesktopProgram.h"

#include "support/Eventually.h"
#include "support/PrivateFolder.h"
#include "support/Test.h"
#include "zlib/common/documents/ZErrorDialog.h"

#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

std::atomic<int> gKillsByNumber{0};

}  // namespace

/// Takes the place of the system's function in this program, and counts.
extern "C" int kill(pid_t process, int signal) noexcept
{
    ++gKillsByNumber;
    return static_cast<int>(syscall(SYS_kill, process, signal));
}

namespace orvane
{

TEST(ZDesktopProgramTest, EndsAProgramThatRuns)
{
    const auto begin = std::chrono::steady_clock::now();
    {
        const ZDesktopProgram program({"sleep", "60"});
        ASSERT_TRUE(program.HasStarted());
        program.Kill();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
    EXPECT_FALSE(ZDesktopProgram({"no such program"}).HasStarted());
}

TEST(ZDesktopProgramTest, DoesNotKillAProgramThatTheHostHasReaped)
{
    const ZDesktopProgram program({"true"});
    ASSERT_TRUE(program.HasStarted());
    // As a host does that waits for any child.
    ASSERT_TRUE(eventually([] { return waitpid(-1, nullptr, WNOHANG) > 0; }));
    gKillsByNumber = 0;
    program.Kill();
    EXPECT_EQ(gKillsByNumber, 0);
}

TEST(ZErrorDialogTest, StartsADialogWithoutWaitingForIt)
{
    const PrivateFolder folder;
    const EnvironmentVariable path("PATH", (folder.Path() + ":/usr/bin:/bin").c_str());
    const EnvironmentVariable display("DISPLAY", ":none");
    // First in the order of the dialogs, so that none of the system's is started.
    folder.Install("zenity", "printf '%s\\n' \"$@\" >'" + folder.Path("part") + "'\nmv '" +
                                 folder.Path("part") + "' '" + folder.Path("shown") + "'\nsleep 5");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(startErrorDialog("Title", "It <failed>."));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(folder.Path("shown")); }));
    EXPECT_EQ(readTextFile(folder.Path("shown")),
              "--error\n--no-markup\n--title=Title\n--text=It <failed>.\n");

    const EnvironmentVariable wayland("WAYLAND_DISPLAY", "");
    const EnvironmentVariable none("DISPLAY", "");
    EXPECT_FALSE(startErrorDialog("Title", "Text"));
}

}  // namespace orvane
