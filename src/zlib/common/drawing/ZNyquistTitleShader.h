// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZLinearGradientShader.h"

namespace orvane
{

/// The band below a window's title, bright in the middle. It has three fixed greys; the arguments
/// of the constructor have no effect.
class ZNyquistTitleShader : public ZLinearGradientShader
{
public:
    using ZLinearGradientShader::ZLinearGradientShader;

    [[nodiscard]] boost::shared_ptr<ZGradientBrush> MakeBrush(const ZPoint& from,
                                                              const ZPoint& to) const override;
};

}  // namespace orvane
