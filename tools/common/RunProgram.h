// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace CLI
{
class App;
}

namespace orvane
{

/// The body of a small program's main function: parses the arguments, calls run and returns the
/// exit code. On failure, wrong arguments included, prints one line that starts with name on
/// standard error and returns 2.
[[nodiscard]] int runProgram(const char* name, CLI::App& app, int argc, char** argv,
                             const std::function<void()>& run);

}  // namespace orvane
