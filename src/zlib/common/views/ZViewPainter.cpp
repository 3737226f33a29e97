// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZViewPainter.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/drawing/ZFont.h"
#include "zlib/common/drawing/ZMeasureScope.h"
#include "zlib/common/drawing/ZPath.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZViewTags.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <array>
#include <cassert>
#include <cmath>
#include <numbers>

namespace orvane
{

ZViewPainter::ZViewPainter()
    : mFont(ZFont::MakeDefault())
{
}

ZViewPainter::~ZViewPainter() = default;

void ZViewPainter::ReadPen(const ZXMLElement& xml)
{
    if (const auto font = xml.GetChild("font"))
        mFont = boost::make_shared<ZFont>(*font);
    readColorTag(xml, "pencolor", mPenColor);
    readColorTag(xml, "brushcolor", mBrushColor);
}

void ZViewPainter::WritePen(ZXMLElement& xml) const
{
    ZXMLElement font("font");
    font.AddAttribute("typeface", withoutMarkup(mFont->GetTypeface().ToNarrow()));
    font.AddAttribute("height", mFont->GetHeight());
    xml.AddChild(font);
    writeColorTag(xml, "pencolor", mPenColor);
    writeColorTag(xml, "brushcolor", mBrushColor);
}

void ZViewPainter::SetPenWidth(std::int32_t width)
{
    assert(width >= 0);
    mPenWidth = width;
}

void ZViewPainter::SetFont(const boost::shared_ptr<ZFont>& font)
{
    assert(font);
    mFont = font;
}

std::int32_t ZViewPainter::StringWidth(const ZString& text) const
{
    if (!mContext)
        return 0;
    const ZMeasureScope scope(*mContext);
    mContext->SetFont(mFont);
    return mContext->StringWidth(text);
}

std::int32_t ZViewPainter::StringHeight(const ZString& text) const
{
    if (!mContext)
        return 0;
    const ZMeasureScope scope(*mContext);
    mContext->SetFont(mFont);
    return mContext->StringHeight(text);
}

void ZViewPainter::UsePen()
{
    mContext->SetPenColor(mPenColor);
    mContext->SetPenWidth(static_cast<float>(mPenWidth));
}

void ZViewPainter::DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2)
{
    if (!mContext)
        return;
    UsePen();
    mContext->DrawLine(x1, y1, x2, y2);
}

void ZViewPainter::DrawLine(const ZPoint& from, const ZPoint& to)
{
    DrawLine(from.x, from.y, to.x, to.y);
}

void ZViewPainter::DrawRect(const ZRect& rect)
{
    if (!mContext)
        return;
    UsePen();
    mContext->DrawRect(rect.left, rect.top, rect.right, rect.bottom);
}

void ZViewPainter::FillRect(const ZRect& rect)
{
    if (!mContext)
        return;
    mContext->SetBrushColor(mBrushColor);
    mContext->FillRect(rect);
}

void ZViewPainter::DrawEllipse(const ZRect& rect)
{
    if (!mContext)
        return;
    // Enough corners for an ellipse as large as a window to look round.
    constexpr std::size_t kCorners = 128;
    // Lines through the outermost pixels.
    const ZRect edge{rect.left, rect.top, rect.right - 1, rect.bottom - 1};
    const float radiusX = static_cast<float>(edge.GetWidth()) / 2.0f;
    const float radiusY = static_cast<float>(edge.GetHeight()) / 2.0f;
    std::array<ZPathPoint, kCorners> points;
    for (std::size_t i = 0; i < kCorners; ++i) {
        const float angle = 2.0f * std::numbers::pi_v<float> * static_cast<float>(i) / kCorners;
        points[i] = {static_cast<float>(edge.left) + radiusX * (1.0f + std::cos(angle)),
                     static_cast<float>(edge.top) + radiusY * (1.0f + std::sin(angle))};
    }
    ZPath path;
    path.AddPoints(points);
    UsePen();
    mContext->ResetPath();
    mContext->AddPath(path);
    mContext->ClosePath();
    mContext->StrokePath();
    mContext->ResetPath();
}

void ZViewPainter::DrawArc(const ZPoint& centre, std::int32_t radius, std::int32_t startDegrees,
                           std::int32_t sweepDegrees)
{
    if (!mContext)
        return;
    UsePen();
    mContext->ResetPath();
    mContext->AddPathArc(centre, radius, startDegrees, sweepDegrees);
    mContext->StrokePath();
    mContext->ResetPath();
}

void ZViewPainter::DrawString(const ZString& text, const ZRect& rect, std::int32_t verticalAlign,
                              std::int32_t horizontalAlign, std::int32_t flags)
{
    if (!mContext)
        return;
    mContext->SetPenColor(mPenColor);
    mContext->SetFont(mFont);
    mContext->DrawString(text, rect.left, rect.top, rect.right, rect.bottom, verticalAlign,
                         horizontalAlign, flags);
}

void ZViewPainter::DrawBitmap(ZBitmap& bitmap, std::int32_t x, std::int32_t y)
{
    if (mContext)
        mContext->DrawBitmap(bitmap, x, y, 1.0f);
}

void ZViewPainter::DrawBitmapPart(ZBitmap& bitmap, const ZRect& source, const ZRect& target)
{
    if (mContext)
        mContext->DrawBitmap(bitmap, source.left, source.top, source.right, source.bottom,
                             target.left, target.top, target.right, target.bottom, 1.0f);
}

}  // namespace orvane
