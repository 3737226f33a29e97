// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZShadingFunction.h"
#include "zlib/common/objects/ZColor.h"

namespace orvane
{

/// From one colour to another, half the way at a middle point that need not be in the middle.
class ZLinearGradientShader : public ZShadingFunction
{
public:
    /// midPoint: where the mean of the two colours stands, in [0, 1]. secondPoint is kept, and
    /// nothing depends on it.
    ZLinearGradientShader(const ZColor& first, const ZColor& second, float midPoint,
                          float secondPoint);

    [[nodiscard]] boost::shared_ptr<ZGradientBrush> MakeBrush(const ZPoint& from,
                                                              const ZPoint& to) const override;

    [[nodiscard]] float GetMidPoint() const { return mMidPoint; }
    [[nodiscard]] float GetSecondPoint() const { return mSecondPoint; }

private:
    ZColor mFirstColor;
    ZColor mSecondColor;
    float mMidPoint;
    float mSecondPoint;
};

}  // namespace orvane
