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

/// The look of the framework's own small windows and of the fields and buttons in them: dark metal
/// with a red accent, like the product's artwork.
namespace ZPanelStyle
{

constexpr ZColor kGround{38, 38, 41, 255};
constexpr ZColor kField{18, 18, 20, 255};
constexpr ZColor kEdge{8, 8, 9, 255};
constexpr ZColor kHighlight{255, 255, 255, 36};
constexpr ZColor kText{224, 224, 224, 255};
constexpr ZColor kQuietText{170, 170, 174, 255};
constexpr ZColor kFaintText{122, 122, 126, 255};
constexpr ZColor kAccent{150, 24, 32, 255};
constexpr ZColor kAccentText{255, 255, 255, 255};

/// Alignments as ZDrawingContext::DrawString takes them.
constexpr std::int32_t kAlignCentre = 0;
constexpr std::int32_t kAlignLeft = 1;
/// The height of all texts, in pixels.
constexpr std::int32_t kFontHeight = 12;

[[nodiscard]] boost::shared_ptr<ZFont> makeFont();
/// Returns width and height of a text in that font when it is wrapped at a width, in pixels.
[[nodiscard]] ZPoint measure(const ZString& text, std::int32_t width);
/// Fills a window and draws its edge.
void drawGround(ZDrawingContext& context, const ZRect& rect);
/// Draws an outline of one pixel inside the rectangle.
void drawEdge(ZDrawingContext& context, const ZRect& rect, const ZColor& color);
void fill(ZDrawingContext& context, const ZRect& rect, const ZColor& color);
/// Draws one line of text, which ends in an ellipsis where it is too long.
void drawLine(ZDrawingContext& context, const ZString& text, const ZRect& rect, std::int32_t align,
              const ZColor& color);
/// Draws a text that is wrapped at the rectangle's width.
void drawText(ZDrawingContext& context, const ZString& text, const ZRect& rect,
              const ZColor& color);

/// How drawButton shows a button.
enum class ButtonState
{
    kNormal,
    kOver,
    kPressed,
};
/// Draws a push button of light metal.
void drawButton(ZDrawingContext& context, const ZString& text, const ZRect& rect,
                ButtonState state);

}  // namespace ZPanelStyle

}  // namespace orvane
