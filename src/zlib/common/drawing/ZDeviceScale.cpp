// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZDeviceScale.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

namespace orvane
{

namespace
{

// A product such as 10 x 1.1 may lie this much beside the whole number that is meant.
constexpr double kRounding = 1e-6;

std::int32_t saturated(double value)
{
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp(value, double{Limits::min()}, double{Limits::max()}));
}

std::int32_t down(double value)
{
    return saturated(std::floor(value + kRounding));
}

std::int32_t up(double value)
{
    return saturated(std::ceil(value - kRounding));
}

ZRect outward(const ZRect& rect, double factor)
{
    if (rect.IsEmpty())
        return {};
    return {down(rect.left * factor), down(rect.top * factor), up(rect.right * factor),
            up(rect.bottom * factor)};
}

std::int32_t side(std::int32_t length, double factor)
{
    return length > 0 ? std::max(saturated(std::floor(length * factor + 0.5)), 1) : 0;
}

}  // namespace

ZDeviceScale::ZDeviceScale(double factor)
    : mFactor(factor)
{
    assert(factor > 0.0);
}

ZPoint ZDeviceScale::ToPixels(const ZPoint& size) const
{
    return {side(size.x, mFactor), side(size.y, mFactor)};
}

ZRect ZDeviceScale::ToPixels(const ZRect& rect) const
{
    return outward(rect, mFactor);
}

ZPoint ZDeviceScale::ToPixel(const ZPoint& unit) const
{
    return {down(unit.x * mFactor), down(unit.y * mFactor)};
}

ZPoint ZDeviceScale::ToUnits(const ZPoint& pixel) const
{
    return {down(pixel.x / mFactor), down(pixel.y / mFactor)};
}

ZRect ZDeviceScale::ToUnits(const ZRect& pixels) const
{
    return outward(pixels, 1.0 / mFactor);
}

}  // namespace orvane
