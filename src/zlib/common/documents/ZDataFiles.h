// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace orvane
{

/// The path of a file that comes with the library, by its name without a folder: beside the
/// library, else in the folder "Orvane" of the user's data, then of the system's. Empty when there
/// is none. [any thread but the audio thread]
[[nodiscard]] std::optional<std::string> findDataFile(const std::string& name);

}  // namespace orvane
