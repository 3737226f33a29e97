// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/VirtualDisplay.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane
{

namespace
{

constexpr const char* kServer = "/usr/bin/Xvfb";

/// Becomes the server. The descriptor is where it writes its number.
[[noreturn]] void runServer(const std::vector<std::string>& options, int numberDescriptor)
{
    std::vector<std::string> arguments{kServer,    "-displayfd", std::to_string(numberDescriptor),
                                       "-screen",  "0",          "1024x768x24",
                                       "-noreset", "-nolisten",  "tcp"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // however the test ends
    execv(kServer, pointers.data());
    _exit(127);
}

/// The line that the server writes once it takes clients; empty if it ends before.
std::string readLine(int descriptor)
{
    std::string line;
    for (char letter = 0; read(descriptor, &letter, 1) == 1 && letter != '\n';)
        line += letter;
    return line;
}

}  // namespace

bool VirtualDisplay::IsAvailable()
{
    return access(kServer, X_OK) == 0 && std::getenv("KESTRUNE_NO_DISPLAY") == nullptr;
}

VirtualDisplay::VirtualDisplay(const std::vector<std::string>& options)
    : mBefore(std::getenv("DISPLAY") ? std::getenv("DISPLAY") : "")
{
    std::array<int, 2> pipeEnds{};
    if (pipe(pipeEnds.data()) != 0)
        throw std::runtime_error("no pipe for the display");
    mServer = fork();
    if (mServer == 0)
        runServer(options, pipeEnds[1]);
    close(pipeEnds[1]);
    const std::string number = readLine(pipeEnds[0]);
    close(pipeEnds[0]);
    if (number.empty()) {
        Kill();
        throw std::runtime_error("the display did not start");
    }
    setenv("DISPLAY", (":" + number).c_str(), 1);
}

VirtualDisplay::~VirtualDisplay()
{
    Kill();
    setenv("DISPLAY", mBefore.c_str(), 1);
}

void VirtualDisplay::Kill()
{
    if (mServer <= 0)
        return;
    kill(mServer, SIGKILL);
    waitpid(mServer, nullptr, 0);
    mServer = -1;
}

}  // namespace orvane
