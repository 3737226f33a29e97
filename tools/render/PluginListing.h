// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane
{

class PluginInstance;

/// Text that lists a plug-in's names, latency, parameters with their current values, and programs.
/// Starts processing, because the latency is known only then.
[[nodiscard]] std::string describePlugin(PluginInstance& plugin);

}  // namespace orvane
