// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZGradientBrush.h"
#include "zlib/linux/drawing/ZCairo.h"

namespace orvane
{

/// A gradient of Cairo.
struct ZGradientBrush::Native
{
    CairoPointer<cairo_pattern_t> pattern;
};

}  // namespace orvane
