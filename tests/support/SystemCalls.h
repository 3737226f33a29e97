#pragma once

#include <functional>
#include <optional>

namespace orvane
{

/// Number of system calls that function makes, as the kernel counts them: those inside the C
/// library and inside libraries without source too. It runs in a child process, so what it changes
/// is not seen here; it should start no threads. No value under a sanitizer, whose runtime calls
/// the system too, on processors other than x86-64, and where filters are not permitted; a test
/// skips then.
std::optional<unsigned> systemCallsOf(const std::function<void()>& function);

}  // namespace orvane
