// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZShadingFunction.h"
#include "zlib/common/objects/ZColor.h"

namespace orvane
{

/// A gradient from one colour to another that reaches their mean at a chosen position.
class ZLinearGradientShader : public ZShadingFunction
{
public:
    /// midPoint: position of the mean of the two colours, in [0, 1]. secondPoint is kept and has no
    /// effect.
    ZLinearGradientShader(const ZColor& first, const ZColor& second, float midPoint,
                          float secondPoint);

    [[nodiscard]] boost::shared_ptr<ZGradientBrush> MakeBrush(const ZPoint& from,
                                                              const ZPoint& to) const override;

private:
    ZColor mFirstColor;
    ZColor mSecondColor;
    float mMidPoint;
    [[maybe_unused]] float mSecondPoint;
};

}  // namespace orvane
