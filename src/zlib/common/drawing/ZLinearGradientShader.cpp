// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZLinearGradientShader.h"

#include <array>
#include <cassert>
#include <cstdint>

namespace orvane
{

namespace
{

std::uint8_t mean(std::uint8_t a, std::uint8_t b)
{
    return static_cast<std::uint8_t>((a + b + 1) / 2);
}

ZColor mean(const ZColor& a, const ZColor& b)
{
    return {mean(a.red, b.red), mean(a.green, b.green), mean(a.blue, b.blue),
            mean(a.alpha, b.alpha)};
}

}  // namespace

ZLinearGradientShader::ZLinearGradientShader(const ZColor& first, const ZColor& second,
                                             float midPoint, float secondPoint)
    : mFirstColor(first)
    , mSecondColor(second)
    , mMidPoint(midPoint)
    , mSecondPoint(secondPoint)
{
    assert(midPoint >= 0.0f && midPoint <= 1.0f);
}

boost::shared_ptr<ZGradientBrush> ZLinearGradientShader::MakeBrush(const ZPoint& from,
                                                                   const ZPoint& to) const
{
    const std::array<ZGradientBrush::Stop, 3> stops{
        {{0.0f, mFirstColor}, {mMidPoint, mean(mFirstColor, mSecondColor)}, {1.0f, mSecondColor}}};
    return ZGradientBrush::Make(from, to, stops);
}

}  // namespace orvane
