// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"

namespace orvane
{

/// Creates an instance of the plug-in and returns its record; the host ends the instance with
/// effClose. Returns null without creating anything when the host answers audioMasterVersion with
/// 0, and after a report to the user when the creation failed. [host thread]
[[nodiscard]] AEffect* openPlugin(audioMasterCallback audioMaster) noexcept;

}  // namespace orvane
