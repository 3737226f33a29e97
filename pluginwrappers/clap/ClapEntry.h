// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/ClapPlugin.h"

namespace orvane
{

/// The plug-in's name in CLAP, under which hosts keep it in projects: it never changes.
inline constexpr const char* kClapId = "orvane.cantorel-mini";

/// What the library exports. Every function that it leads to takes what a host may pass by mistake
/// and lets no exception out.
[[nodiscard]] const clap_plugin_entry& clapEntry();

}  // namespace orvane
