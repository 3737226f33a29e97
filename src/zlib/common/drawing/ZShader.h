// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZGradientBrush.h"
#include "zlib/common/objects/ZPoint.h"

#include <boost/shared_ptr.hpp>

namespace orvane
{

class ZShadingFunction;

/// A brush made ready: how colours run, between two points. Filling with one that has no brush,
/// since its two points are one, does nothing.
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
