// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZImage.h"
#include "zlib/linux/drawing/ZCairo.h"

namespace orvane
{

/// A Cairo image surface in the format ARGB32.
struct ZImage::Native
{
    CairoPointer<cairo_surface_t> surface;
};

}  // namespace orvane
