// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// The processor's floating-point mode for signal work, for the life of the object and on its
/// thread: numbers too small to hear count as 0, since they cost a hundred times as much as others,
/// rounding goes to the nearest and nothing traps. The mode that was in force, the host's, is put
/// back with its flags. Without vector code of our own the mode is left alone. [audio thread]
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
