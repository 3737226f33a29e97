// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZMessageBoxContent.h"

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/drawing/ZFont.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/views/ZPanelStyle.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <utility>

namespace orvane
{

namespace
{

// Sizes in pixels.
constexpr std::int32_t kMargin = 18;
constexpr std::int32_t kSignSize = 32;
constexpr std::int32_t kSignFontHeight = 20;
constexpr std::int32_t kMinTextWidth = 180;
constexpr std::int32_t kMaxTextWidth = 380;
constexpr std::int32_t kMaxBoxTextHeight = 480;
constexpr std::int32_t kButtonWidth = 76;
constexpr std::int32_t kButtonHeight = 23;

struct Sign
{
    const char* text;
    ZColor color;
};

Sign signOf(ZMessageBox::Kind kind)
{
    switch (kind) {
    case ZMessageBox::kInformation:
    case ZMessageBox::kNotice:
        return {"i", {58, 110, 165, 255}};
    case ZMessageBox::kWarning:
        return {"!", {205, 140, 30, 255}};
    default:
        return {"\xc3\x97", {176, 28, 36, 255}};
    }
}

void drawSign(ZDrawingContext& context, const ZPoint& corner, const Sign& sign)
{
    constexpr std::int32_t kRadius = kSignSize / 2;
    context.SetAntiAlias(true);
    context.ResetPath();
    context.AddPathArc({corner.x + kRadius, corner.y + kRadius}, kRadius, 0, 360);
    context.SetBrushColor(sign.color);
    context.FillPath();
    context.ResetPath();
    context.SetAntiAlias(false);
    const auto font = boost::make_shared<ZFont>("Arial", kSignFontHeight);
    font->SetBold(true);
    context.SetFont(font);
    context.SetPenColor(ZPanelStyle::kAccentText);
    const std::int32_t top = corner.y + kRadius - context.StringHeight(sign.text) / 2;
    context.DrawString(sign.text, {corner.x, top, corner.x + kSignSize, corner.y + kSignSize},
                       ZPanelStyle::kAlignCentre);
}

}  // namespace

ZMessageBoxContent::ZMessageBoxContent(ZMessageBox::Kind kind, const ZString& text)
    : mKind(kind)
    , mText(text)
{
    const ZPoint wanted = ZPanelStyle::measure(text, kMaxTextWidth);
    const std::int32_t width = std::max(wanted.x, kMinTextWidth);
    const std::int32_t height = std::clamp(wanted.y, kSignSize, kMaxBoxTextHeight);
    const std::int32_t left = 2 * kMargin + kSignSize;
    // A text lower than the sign is centred beside it.
    const std::int32_t top = kMargin + std::max(height - wanted.y, 0) / 2;
    mTextRect = {left, top, left + width, kMargin + height};
    mSize = {mTextRect.right + kMargin, mTextRect.bottom + 2 * kMargin + kButtonHeight};
    mButton = {mSize.x - kMargin - kButtonWidth, mSize.y - kMargin - kButtonHeight,
               mSize.x - kMargin, mSize.y - kMargin};
}

void ZMessageBoxContent::Draw(ZDrawingContext& context)
{
    ZPanelStyle::drawGround(context, {0, 0, mSize.x, mSize.y});
    drawSign(context, {kMargin, kMargin}, signOf(mKind));
    ZPanelStyle::drawText(context, mText, mTextRect, ZPanelStyle::kText);
    const auto state = mPressed && mOver ? ZPanelStyle::ButtonState::kPressed
                       : mOver           ? ZPanelStyle::ButtonState::kOver
                                         : ZPanelStyle::ButtonState::kNormal;
    ZPanelStyle::drawButton(context, "OK", mButton, state);
}

bool ZMessageBoxContent::Mouse(const ZNativeMouseEvent& event)
{
    const bool isOver =
        event.action != ZNativeMouseEvent::kLeave && mButton.Contains(event.position);
    const bool changed = std::exchange(mOver, isOver) != isOver;
    switch (event.action) {
    case ZNativeMouseEvent::kDown:
    case ZNativeMouseEvent::kDoubleClick:
        mPressed = isOver;
        return true;
    case ZNativeMouseEvent::kUp:
        if (std::exchange(mPressed, false) && isOver)
            End();
        return true;
    default:
        return changed;
    }
}

bool ZMessageBoxContent::Key(const ZNativeKeyEvent& event)
{
    if (event.code == kKeyReturn || event.code == kKeyEscape || event.code == kKeySpace)
        End();
    return false;
}

void ZMessageBoxContent::Dismiss()
{
    End();
}

void ZMessageBoxContent::End() const
{
    if (mEnded)
        mEnded();
}

}  // namespace orvane
