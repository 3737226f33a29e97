// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/linux/drawing/ZCairo.h"

#include <vector>

namespace orvane
{

/// A Cairo image surface in the format ARGB32, which has the image's device scale.
struct ZImage::Native
{
    /// A part of the image at another size, both in pixels.
    struct ScaledCopy
    {
        ZRect part;
        ZPoint size;
        CairoPointer<cairo_surface_t> surface;
    };

    CairoPointer<cairo_surface_t> surface;
    double scale = 1.0;
    bool keepsCopies = false;
    std::vector<ScaledCopy> copies;  // the last ones that were drawn
};

}  // namespace orvane
