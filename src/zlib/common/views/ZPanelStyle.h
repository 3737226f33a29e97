// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZDrawingContext;
class ZFont;
class ZString;

/// How the framework's own little windows look, and the fields and buttons in them: dark metal with
/// a red accent, as the pictures of the product.
namespace ZPanelStyle
{

constexpr ZColor kGround{38, 38, 41, 255};
constexpr ZColor kField{18, 18, 20, 255};
constexpr ZColor kEdge{8, 8, 9, 255};
constexpr ZColor kHighlight{255, 255, 255, 36};
constexpr ZColor kText{224, 224, 224, 255};
constexpr ZColor kFaintText{122, 122, 126, 255};
constexpr ZColor kAccent{150, 24, 32, 255};
constexpr ZColor kAccentText{255, 255, 255, 255};

/// As ZDrawingContext::DrawString takes it.
constexpr std::int32_t kAlignCentre = 0;
constexpr std::int32_t kAlignLeft = 1;
/// Of all texts, in pixels.
constexpr std::int32_t kFontHeight = 12;

[[nodiscard]] boost::shared_ptr<ZFont> makeFont();
/// Width and height of a text in that font, wrapped at a width in pixels.
[[nodiscard]] ZPoint measure(const ZString& text, std::int32_t width);
/// The ground of a window with its edge.
void drawGround(ZDrawingContext& context, const ZRect& rect);
/// One pixel wide, inside the rectangle.
void drawEdge(ZDrawingContext& context, const ZRect& rect, const ZColor& color);
void fill(ZDrawingContext& context, const ZRect& rect, const ZColor& color);
/// align as for ZDrawingContext::DrawString; one line, which ends in an ellipsis where it is long.
void drawLine(ZDrawingContext& context, const ZString& text, const ZRect& rect, std::int32_t align,
              const ZColor& color);
/// The same, wrapped.
void drawText(ZDrawingContext& context, const ZString& text, const ZRect& rect,
              const ZColor& color);

enum class ButtonState
{
    kNormal,
    kOver,
    kPressed,
};
/// A push button of light metal.
void drawButton(ZDrawingContext& context, const ZString& text, const ZRect& rect,
                ButtonState state);

}  // namespace ZPanelStyle

}  // namespace orvane
