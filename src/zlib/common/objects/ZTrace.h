// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace orvane
{

/// Lines for whoever looks for a fault: no part of the product's behaviour. They go to a sink that
/// is absent unless a test or a debugging session installs one.
class ZTrace
{
public:
    using Sink = void (*)(std::string_view line);

    /// Hands the line to the sink in force, if any. [any thread]
    static void Write(std::string_view line);

    /// Replaces the sink and gives back the one before; null means none. [any thread]
    static Sink SetSink(Sink sink);
};

}  // namespace orvane
