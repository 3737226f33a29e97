// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZNyquistTitleShader.h"

#include <array>

namespace orvane
{

boost::shared_ptr<ZGradientBrush> ZNyquistTitleShader::MakeBrush(const ZPoint& from,
                                                                 const ZPoint& to) const
{
    constexpr std::array<ZGradientBrush::Stop, 3> kStops{{
        {0.0f, {88, 88, 88, 255}},
        {0.5f, {162, 162, 162, 255}},
        {1.0f, {73, 73, 73, 255}},
    }};
    return ZGradientBrush::Make(from, to, kStops);
}

}  // namespace orvane
