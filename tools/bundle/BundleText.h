// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane
{

class ZPluginCore;

// The texts of an LV2 bundle in Turtle, made from the elements of a started plug-in, so that they
// cannot differ from what the library does. The caller holds the interface lock.

/// Returns the list of what the bundle holds. binary: the library's file name.
[[nodiscard]] std::string manifestText(ZPluginCore& core, const std::string& binary);
/// Returns the description of the plug-in, its ports and its window.
[[nodiscard]] std::string pluginText(ZPluginCore& core, const std::string& binary);
/// Returns the programs, as values of ports and text. Makes each program current in turn.
[[nodiscard]] std::string presetsText(ZPluginCore& core);

}  // namespace orvane
