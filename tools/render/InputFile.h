// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

namespace orvane
{

/// Reads a whole file of at most 16 MB, which no preset, chunk or MIDI file comes near. Throws
/// ZException when the file cannot be read, is a folder or is longer.
[[nodiscard]] std::string readInputFile(const std::filesystem::path& path);

}  // namespace orvane
