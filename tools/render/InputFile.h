// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

namespace orvane
{

/// The bytes of a small file: up to 16 MB, far above what texts, chunks and MIDI files need. Throws
/// ZException where it cannot be read, is a folder, or is longer.
[[nodiscard]] std::string readInputFile(const std::filesystem::path& path);

}  // namespace orvane
