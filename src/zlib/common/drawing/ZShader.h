// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZGradientBrush.h"
#include "zlib/common/objects/ZPoint.h"

#include <boost/shared_ptr.hpp>

namespace orvane
{

class ZShadingFunction;

/// A brush made of a shading function and two points. If both points are the same there is no
/// brush, and filling with the shader does nothing. [interface thread]
class ZShader
{
public:
    ZShader(const ZPoint& from, const ZPoint& to, const ZShadingFunction& function);

    /// May be null.
    [[nodiscard]] const boost::shared_ptr<ZGradientBrush>& GetBrush() const { return mBrush; }

private:
    boost::shared_ptr<ZGradientBrush> mBrush;
};

}  // namespace orvane
