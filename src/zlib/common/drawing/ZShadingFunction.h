// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZGradientBrush.h"
#include "zlib/common/objects/ZPoint.h"

#include <boost/shared_ptr.hpp>

namespace orvane
{

/// Defines how colours run between two points.
class ZShadingFunction
{
public:
    ZShadingFunction() = default;
    ZShadingFunction(const ZShadingFunction&) = delete;
    ZShadingFunction& operator=(const ZShadingFunction&) = delete;
    virtual ~ZShadingFunction() = default;

    /// Null when both points are the same.
    [[nodiscard]] virtual boost::shared_ptr<ZGradientBrush> MakeBrush(const ZPoint& from,
                                                                      const ZPoint& to) const = 0;
};

}  // namespace orvane
