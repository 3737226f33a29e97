// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace orvane
{

/// Trace lines for debugging. They go to a sink, which only a test or a debugging session installs.
class ZTrace
{
public:
    using Sink = void (*)(std::string_view line);

    /// Passes the line to the sink, if there is one. [any thread]
    static void Write(std::string_view line);

    /// Replaces the sink and returns the previous one; null for none. [any thread]
    static Sink SetSink(Sink sink);
};

}  // namespace orvane
