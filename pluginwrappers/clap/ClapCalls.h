// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/ClapPlugin.h"

#include <cstddef>
#include <string_view>

namespace orvane
{

class ZCLAPPlugin;

/// Returns the plug-in for a call of the host that belongs to the main thread or to the audio
/// thread. A call that comes on another is told to the host's log under the function's name.
ZCLAPPlugin& onMainThread(const clap_plugin* record, const char* function);
ZCLAPPlugin& onAudioThread(const clap_plugin* record, const char* function);

/// Writes as much of the text as fits, and the 0 that ends it, into capacity bytes.
void writeText(char* target, std::size_t capacity, std::string_view text);

}  // namespace orvane
