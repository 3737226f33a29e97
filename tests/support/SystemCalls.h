// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>

namespace orvane
{

/// Number of system calls that function makes, as the kernel counts them: those inside the C
/// library and inside libraries without source too. It runs in a child process, so what it changes
/// is not seen here; calls of threads that it starts are not counted. No value under a sanitizer,
/// whose runtime calls the system too, and where no process may be traced; a test skips then.
std::optional<unsigned> systemCallsOf(const std::function<void()>& function);

}  // namespace orvane
