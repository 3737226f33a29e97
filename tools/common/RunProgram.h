// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace CLI
{
class App;
}

namespace orvane
{

/// What the main function of a small program does: reads the arguments, runs, and gives back the
/// exit code. A failure, wrong arguments included, is one line on standard error under the
/// program's name, and 2.
[[nodiscard]] int runProgram(const char* name, CLI::App& app, int argc, char** argv,
                             const std::function<void()>& run);

}  // namespace orvane
