// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZValueTip.h"

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/views/ZContentWindow.h"
#include "zlib/common/views/ZFocusRing.h"
#include "zlib/common/views/ZTooltipContent.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <cassert>

namespace orvane
{

namespace
{

// Between the tip and what it belongs to, with room for the focus ring.
constexpr std::int32_t kGap = ZFocusRing::kReach + 1;

ZRect placeOver(const ZRect& window, const ZRect& around, const ZPoint& size)
{
    const std::int32_t left = (around.left + around.right - size.x) / 2;
    const std::int32_t above = around.top - kGap - size.y;
    const std::int32_t top = above >= window.top ? above : around.bottom + kGap;
    return keptOn(window, {left, top, left + size.x, top + size.y});
}

}  // namespace

void ZValueTip::Show(const ZView& view, const ZString& text, const ZRect& around)
{
    assert(!text.IsEmpty());
    const ZRect window{0, 0, mWindow.GetWidth(), mWindow.GetHeight()};
    if (window.IsEmpty())
        return;
    const ZPoint& origin = view.GetWindowOrigin();
    Replace(&view, text,
            placeOver(window, around.Offset(origin.x, origin.y), ZTooltipContent(text).GetSize()));
}

void ZValueTip::Hide(const ZView& view)
{
    if (mView == &view)
        Replace(nullptr, {}, {});
}

void ZValueTip::Replace(const ZView* view, const ZString& text, const ZRect& rect)
{
    if (view == mView && text == mText && rect == mRect)
        return;
    mWindow.RepaintUnder(mRect);
    mView = view;
    mText = text;
    mRect = rect;
    mWindow.RepaintUnder(mRect);
}

void ZValueTip::Draw(ZDrawingContext& context, const ZRect& update) const
{
    if (!mView || !mRect.Intersects(update))
        return;
    const ZSavedStateScope saved(context);
    context.SetClip(update);
    context.Translate(mRect.left, mRect.top);
    ZTooltipContent(mText).Draw(context);
}

}  // namespace orvane
