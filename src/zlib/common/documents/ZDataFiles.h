// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace orvane
{

/// Returns the path of a data file, given by its name without a folder: from the library's folder,
/// else from the folder "Orvane" in the user's data folder, else in the system's data folders.
/// No value when none has the file. [any thread but the audio thread]
[[nodiscard]] std::optional<std::string> findDataFile(const std::string& name);

}  // namespace orvane
