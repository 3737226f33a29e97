// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"

namespace orvane
{

/// Creates an instance of the plug-in and returns its record; the host ends the instance with
/// effClose. Returns null without creating anything when the host answers audioMasterVersion with
/// 0. Returns null when the creation failed, after a line on standard error and, where there is a
/// display, a dialog that nothing waits for. [host thread]
[[nodiscard]] AEffect* openPlugin(audioMasterCallback audioMaster) noexcept;

}  // namespace orvane
