// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace orvane
{

class ZPlugin;

/// Returns a started application, with the managers of its description and its parameters. It does
/// not tick by itself before its InitLooper. The caller holds the interface lock. Throws
/// ZException for a description that cannot be built. [host thread]
[[nodiscard]] std::unique_ptr<ZPlugin> startApplication();

/// Reports the exception that is being handled after an instance could not be made: a line on
/// standard error and, where there is a display, a dialog that nothing waits for. [host thread]
void reportFailedLoad() noexcept;

}  // namespace orvane
