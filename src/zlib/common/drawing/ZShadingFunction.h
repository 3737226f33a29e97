// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZGradientBrush.h"
#include "zlib/common/objects/ZPoint.h"

#include <boost/shared_ptr.hpp>

namespace orvane
{

/// Says how colours run between two points.
class ZShadingFunction
{
public:
    ZShadingFunction() = default;
    ZShadingFunction(const ZShadingFunction&) = delete;
    ZShadingFunction& operator=(const ZShadingFunction&) = delete;
    virtual ~ZShadingFunction() = default;

    /// Null when the two points are one.
    [[nodiscard]] virtual boost::shared_ptr<ZGradientBrush> MakeBrush(const ZPoint& from,
                                                                      const ZPoint& to) const = 0;
};

}  // namespace orvane
