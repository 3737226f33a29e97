// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/ClapPresetDiscovery.h"

namespace orvane
{

/// Tells hosts of the factory presets, which are found in the plug-in by their keys.
[[nodiscard]] const clap_preset_discovery_factory& clapPresetFactory();

}  // namespace orvane
