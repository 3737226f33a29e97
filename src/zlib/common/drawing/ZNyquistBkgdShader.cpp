// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZNyquistBkgdShader.h"

#include <array>

namespace orvane
{

boost::shared_ptr<ZGradientBrush> ZNyquistBkgdShader::MakeBrush(const ZPoint& from,
                                                                const ZPoint& to) const
{
    constexpr std::array<ZGradientBrush::Stop, 3> kStops{{
        {0.0f, {40, 40, 40, 255}},
        {0.5f, {73, 73, 73, 255}},
        {1.0f, {40, 40, 40, 255}},
    }};
    return ZGradientBrush::Make(from, to, kStops);
}

}  // namespace orvane
