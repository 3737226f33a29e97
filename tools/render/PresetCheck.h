// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/StateText.h"

#include <string>
#include <vector>

namespace orvane
{

/// Compares a preset with the plug-in's state after it was loaded. Returns a note for each element
/// that had no effect: unknown name, value of another type, or value out of range.
[[nodiscard]] std::vector<std::string> checkPreset(const StateText& preset, const StateText& state);

}  // namespace orvane
