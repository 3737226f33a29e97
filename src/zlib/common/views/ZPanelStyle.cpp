// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZPanelStyle.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/drawing/ZFont.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>

namespace orvane
{

namespace
{

constexpr ZColor kMetalUpper{230, 230, 230, 255};
constexpr ZColor kMetalLower{203, 203, 203, 255};
constexpr ZColor kMetalUpperOver{250, 250, 250, 255};
constexpr ZColor kMetalLowerOver{231, 231, 231, 255};
constexpr ZColor kMetalUpperPressed{150, 150, 150, 255};
constexpr ZColor kMetalLowerPressed{176, 176, 176, 255};
constexpr ZColor kMetalText{28, 28, 30, 255};
constexpr ZColor kMetalTextOver{150, 16, 24, 255};
// Higher than any text of a small window.
constexpr std::int32_t kMaxTextHeight = 4096;

void drawIn(ZDrawingContext& context, const ZString& text, const ZRect& rect, std::int32_t align,
            const ZColor& color)
{
    context.SetFont(ZPanelStyle::makeFont());
    context.SetPenColor(color);
    context.DrawString(text, rect, align);
}

}  // namespace

boost::shared_ptr<ZFont> ZPanelStyle::makeFont()
{
    return boost::make_shared<ZFont>("Arial", kFontHeight);
}

ZPoint ZPanelStyle::measure(const ZString& text, std::int32_t width)
{
    assert(width > 0);
    ZBitmap context(1, 1, nullptr);
    context.SetFont(makeFont());
    const ZRect bounds = context.StringBounds(text, {0, 0, width, kMaxTextHeight});
    // The bounds are rounded down, so a pixel may be missing.
    return {bounds.right + 1, bounds.bottom + 1};
}

void ZPanelStyle::drawGround(ZDrawingContext& context, const ZRect& rect)
{
    fill(context, rect, kGround);
    fill(context, {rect.left, rect.top + 1, rect.right, rect.top + 2}, kHighlight);
    drawEdge(context, rect, kEdge);
}

void ZPanelStyle::drawEdge(ZDrawingContext& context, const ZRect& rect, const ZColor& color)
{
    context.SetPenColor(color);
    context.SetPenWidth(1.0f);
    context.DrawRect(rect.left, rect.top, rect.right - 1, rect.bottom - 1);
}

void ZPanelStyle::fill(ZDrawingContext& context, const ZRect& rect, const ZColor& color)
{
    context.SetBrushColor(color);
    context.FillRect(rect);
}

void ZPanelStyle::drawLine(ZDrawingContext& context, const ZString& text, const ZRect& rect,
                           std::int32_t align, const ZColor& color)
{
    context.SetTruncate(true);
    drawIn(context, text, rect, align, color);
    context.SetTruncate(false);
}

void ZPanelStyle::drawText(ZDrawingContext& context, const ZString& text, const ZRect& rect,
                           const ZColor& color)
{
    drawIn(context, text, rect, ZPanelStyle::kAlignLeft, color);
}

void ZPanelStyle::drawButton(ZDrawingContext& context, const ZString& text, const ZRect& rect,
                             ButtonState state)
{
    const bool isOver = state == ButtonState::kOver;
    const bool isPressed = state == ButtonState::kPressed;
    const std::int32_t middle = (rect.top + rect.bottom) / 2;
    fill(context, {rect.left, rect.top, rect.right, middle},
         isPressed ? kMetalUpperPressed
         : isOver  ? kMetalUpperOver
                   : kMetalUpper);
    fill(context, {rect.left, middle, rect.right, rect.bottom},
         isPressed ? kMetalLowerPressed
         : isOver  ? kMetalLowerOver
                   : kMetalLower);
    drawEdge(context, rect, kEdge);
    const std::int32_t top = middle - measure(text, rect.GetWidth()).y / 2 + (isPressed ? 1 : 0);
    drawLine(context, text, {rect.left + 2, top, rect.right - 2, rect.bottom}, kAlignCentre,
             isOver ? kMetalTextOver : kMetalText);
}

}  // namespace orvane
