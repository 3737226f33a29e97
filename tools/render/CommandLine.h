// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/OfflineRender.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace orvane
{

/// The parsed command line.
struct CommandLine
{
    RenderRequest request;                      // for a single input also with input and output
    std::filesystem::path library;              // empty: the product's
    std::vector<std::filesystem::path> inputs;  // of a batch; else empty
    std::filesystem::path folder;               // for the outputs of a batch
    bool lists = false;
};

/// Parses the arguments of the program. Prints --help and --version itself and returns nothing
/// then. Throws ZException that says what would be right.
[[nodiscard]] std::optional<CommandLine> parseCommandLine(int argc, char** argv);

}  // namespace orvane
