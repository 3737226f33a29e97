// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// A position in pixels; x grows to the right, y downwards.
struct ZPoint
{
    std::int32_t x = 0;
    std::int32_t y = 0;

    bool operator==(const ZPoint&) const = default;
};

}  // namespace orvane
