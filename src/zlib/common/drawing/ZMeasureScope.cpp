// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZMeasureScope.h"

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/drawing/ZGraphics.h"
#include "zlib/common/drawing/ZImage.h"

#include <cassert>

namespace orvane
{

ZMeasureScope::ZMeasureScope(ZDrawingContext& context)
    : mContext(context)
{
    if (context.GetGraphics())
        return;
    mImage = ZImage::Create(1, 1);
    if (!mImage)
        return;
    mGraphics = std::make_unique<ZGraphics>(*mImage);
    context.SetGraphics(mGraphics.get());
}

ZMeasureScope::~ZMeasureScope()
{
    assert(!mGraphics || mContext.GetGraphics() == mGraphics.get());
    if (mGraphics)
        mContext.SetGraphics(nullptr);
}

}  // namespace orvane
