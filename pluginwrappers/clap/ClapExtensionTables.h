// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Returns the functions of an extension that the plug-in offers, which expect an instance whose
/// plugin_data is a ZCLAPPlugin; null for an extension that it does not offer. [any thread]
[[nodiscard]] const void* findClapExtension(const char* name) noexcept;

}  // namespace orvane
