// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"

namespace orvane
{

/// Builds one instance of the plug-in for a host and gives its record, which the host ends by
/// effClose. Null when the host does not answer audioMasterVersion, with nothing built, or when
/// building failed, which the user has then been told. [host thread]
[[nodiscard]] AEffect* openPlugin(audioMasterCallback audioMaster) noexcept;

}  // namespace orvane
