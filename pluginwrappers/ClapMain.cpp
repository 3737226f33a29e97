// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the record that the CLAP library exports.

#include "pluginwrappers/clap/ClapEntry.h"

extern "C" {
[[gnu::visibility("default")]] extern const orvane::clap_plugin_entry clap_entry;
const orvane::clap_plugin_entry clap_entry{orvane::clapEntry()};
}
