// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// Sets the processor's floating-point mode for signal processing on this thread, for the life of
/// the object: denormal numbers count as 0, because they are a hundred times as slow, results are
/// rounded to the nearest, and nothing traps. The destructor restores the host's mode and flags. A
/// build without vector code does not change the mode. [audio thread]
class ZFloatMode
{
public:
    ZFloatMode() noexcept;
    ~ZFloatMode();
    ZFloatMode(const ZFloatMode&) = delete;
    ZFloatMode& operator=(const ZFloatMode&) = delete;

private:
    const std::uint32_t mBefore;
};

}  // namespace orvane
