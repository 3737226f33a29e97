// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace orvane
{

class ZDrawingContext;
class ZGraphics;
class ZImage;

/// Lets texts be measured outside a paint: gives a context without a target one of 1 x 1 pixels
/// while the scope lives. Neither size nor device scale of a target changes what a text measures.
/// [interface thread]
class ZMeasureScope
{
public:
    explicit ZMeasureScope(ZDrawingContext& context);
    ZMeasureScope(const ZMeasureScope&) = delete;
    ZMeasureScope& operator=(const ZMeasureScope&) = delete;
    ~ZMeasureScope();

private:
    ZDrawingContext& mContext;
    std::unique_ptr<ZImage> mImage;
    std::unique_ptr<ZGraphics> mGraphics;  // null where the context had a target
};

}  // namespace orvane
