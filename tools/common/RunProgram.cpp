// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/common/RunProgram.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>

namespace orvane
{

int runProgram(const char* name, CLI::App& app, int argc, char** argv,
               const std::function<void()>& run)
{
    try {
        app.parse(argc, argv);
        run();
        return 0;
    } catch (const CLI::Success& success) {
        return app.exit(success);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s: %s\n", name, failure.what());
    }
    return 2;
}

}  // namespace orvane
