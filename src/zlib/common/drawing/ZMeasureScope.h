// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace orvane
{

class ZDrawingContext;
class ZGraphics;
class ZImage;

/// Lets texts be measured outside a paint: gives a context that has no target a small one for the
/// life of the object. Measures do not depend on the size of a target, so no window is asked.
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
