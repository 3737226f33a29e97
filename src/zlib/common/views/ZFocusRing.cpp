// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZFocusRing.h"

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <cassert>

namespace orvane
{

namespace
{

constexpr ZColor kRingLight{255, 204, 102, 255};
constexpr ZColor kDark{0, 0, 0, 255};

/// Fills the frame between a rectangle and that inside it, which is smaller by width on each side.
/// Four rectangles instead of a line: their edges are on whole pixels at every device scale.
void fillFrame(ZDrawingContext& context, const ZRect& outer, int width, const ZColor& color)
{
    const ZRect inner = outer.Inset(width, width);
    context.SetBrushColor(color);
    context.FillRect(outer.left, outer.top, outer.right, inner.top);
    context.FillRect(outer.left, inner.bottom, outer.right, outer.bottom);
    context.FillRect(outer.left, inner.top, inner.left, inner.bottom);
    context.FillRect(inner.right, inner.top, outer.right, inner.bottom);
}

}  // namespace

void ZFocusRing::Place(const ZRect& rect)
{
    if (rect == mRect)
        return;
    if (!mRect.IsEmpty())
        mWindow.RepaintUnder(GetOuter());
    mRect = rect;
    if (!mRect.IsEmpty())
        mWindow.RepaintUnder(GetOuter());
}

void ZFocusRing::Draw(ZDrawingContext& context, const ZRect& update) const
{
    const ZRect outer = GetOuter();
    if (mRect.IsEmpty() || !outer.Intersects(update))
        return;
    const ZSavedStateScope saved(context);
    context.SetClip(update);
    static_assert(kReach == 4, "one dark unit, two light ones, one dark one");
    fillFrame(context, outer, 1, kDark);
    fillFrame(context, outer.Inset(1, 1), 2, kRingLight);
    fillFrame(context, outer.Inset(3, 3), 1, kDark);
}

}  // namespace orvane
