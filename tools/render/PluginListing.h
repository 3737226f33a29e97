// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane
{

class PluginInstance;

/// What a plug-in says of itself, in lines for a reader: its names, its parameters with the values
/// in force, its programs. Starts it for a moment, since it tells its latency only then.
[[nodiscard]] std::string describePlugin(PluginInstance& plugin);

}  // namespace orvane
