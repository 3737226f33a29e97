// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"

namespace orvane
{

/// Colour, width and caps of stroked lines.
struct ZPen
{
    ZColor color{0, 0, 0, 255};
    float width = 1.0f;  // in units of the transform; never thinner than a pixel of the device
    bool roundStart = false;
    bool roundEnd = false;
};

}  // namespace orvane
