// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// A colour with channels from 0 to 255; an alpha of 255 is opaque.
struct ZColor
{
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 0;

    bool operator==(const ZColor&) const = default;
};

}  // namespace orvane
