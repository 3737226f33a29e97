// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZTooltipContent.h"

#include "zlib/common/views/ZPanelStyle.h"

namespace orvane
{

namespace
{

constexpr std::int32_t kMaxTextWidth = 320;
constexpr std::int32_t kMarginX = 6;
constexpr std::int32_t kMarginY = 4;

}  // namespace

ZTooltipContent::ZTooltipContent(const ZString& text)
    : mText(text)
{
    const ZPoint size = ZPanelStyle::measure(text, kMaxTextWidth);
    mSize = {size.x + 2 * kMarginX, size.y + 2 * kMarginY};
}

void ZTooltipContent::Draw(ZDrawingContext& context)
{
    const ZRect frame{0, 0, mSize.x, mSize.y};
    ZPanelStyle::drawGround(context, frame);
    ZPanelStyle::drawText(context, mText, frame.Inset(kMarginX, kMarginY), ZPanelStyle::kText);
}

}  // namespace orvane
