#pragma once

#include "zlib/common/ZGradientBrush.h"
#include "zlib/linux/ZCairo.h"

namespace orvane
{

struct ZGradientBrush::Native
{
    CairoPointer<cairo_pattern_t> pattern;
};

}  // namespace orvane
