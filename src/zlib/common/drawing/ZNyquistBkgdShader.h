// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZLinearGradientShader.h"

namespace orvane
{

/// The dark background of a graph: lighter in the middle. Its three greys are its own; what the
/// constructor is given is not looked at.
class ZNyquistBkgdShader : public ZLinearGradientShader
{
public:
    using ZLinearGradientShader::ZLinearGradientShader;

    [[nodiscard]] boost::shared_ptr<ZGradientBrush> MakeBrush(const ZPoint& from,
                                                              const ZPoint& to) const override;
};

}  // namespace orvane
