// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZDrawingContext.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZFont.h"
#include "zlib/common/drawing/ZPath.h"
#include "zlib/common/drawing/ZRegion.h"
#include "zlib/common/drawing/ZShader.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

ZPathPoint toPathPoint(const ZPoint& point)
{
    return {static_cast<float>(point.x), static_cast<float>(point.y)};
}

ZGraphics::Align toAlign(std::int32_t align)
{
    switch (align) {
    case 0:
        return ZGraphics::Align::kCentre;
    case 2:
        return ZGraphics::Align::kRight;
    default:
        return ZGraphics::Align::kLeft;
    }
}

}  // namespace

void ZDrawingContext::DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2)
{
    if (ZGraphics* const target = GetGraphics())
        target->StrokeLine(mPen, {x1, y1}, {x2, y2});
}

void ZDrawingContext::DrawLine(const ZPoint& from, const ZPoint& to)
{
    DrawLine(from.x, from.y, to.x, to.y);
}

void ZDrawingContext::StrokePath()
{
    if (ZGraphics* const target = GetGraphics())
        target->Stroke(mPen, mPath);
}

void ZDrawingContext::FillPath()
{
    if (ZGraphics* const target = GetGraphics())
        target->Fill(mBrush, mPath);
}

void ZDrawingContext::FillRegion(const ZShader& shader, const ZRegion& region)
{
    ZGraphics* const target = GetGraphics();
    if (target && shader.GetBrush())
        target->FillRegion(*shader.GetBrush(), region);
}

void ZDrawingContext::FillRect(const ZShader& shader, const ZRect& rect)
{
    ZGraphics* const target = GetGraphics();
    if (target && shader.GetBrush())
        target->FillRect(*shader.GetBrush(), rect);
}

void ZDrawingContext::AddPathLine(const ZPoint& from, const ZPoint& to)
{
    mPath.AddLine(toPathPoint(from), toPathPoint(to));
}

void ZDrawingContext::AddPathArc(const ZPoint& centre, std::int32_t radius,
                                 std::int32_t startDegrees, std::int32_t sweepDegrees)
{
    mPath.AddArc(toPathPoint(centre), static_cast<float>(radius),
                 static_cast<float>(startDegrees % 360), static_cast<float>(sweepDegrees));
}

void ZDrawingContext::AddPath(const boost::shared_ptr<ZPath>& path)
{
    if (path)
        AddPath(*path);
}

void ZDrawingContext::AddPath(const ZPath& path)
{
    mPath.Append(path.GetNative());
}

void ZDrawingContext::ClosePath()
{
    mPath.Close();
}

void ZDrawingContext::ResetPath()
{
    mPath.Clear();
}

void ZDrawingContext::DrawRect(std::int32_t left, std::int32_t top, std::int32_t right,
                               std::int32_t bottom)
{
    if (ZGraphics* const target = GetGraphics())
        target->StrokeRect(mPen, {left, top, right, bottom});
}

void ZDrawingContext::FillRect(std::int32_t left, std::int32_t top, std::int32_t right,
                               std::int32_t bottom)
{
    if (ZGraphics* const target = GetGraphics())
        target->FillRect(mBrush, ZRect{left, top, right, bottom});
}

void ZDrawingContext::InvertRect(std::int32_t left, std::int32_t top, std::int32_t right,
                                 std::int32_t bottom)
{
    if (ZGraphics* const target = GetGraphics())
        target->InvertRect({left, top, right, bottom});
}

void ZDrawingContext::DrawCross(std::int32_t left, std::int32_t top, std::int32_t right,
                                std::int32_t bottom)
{
    DrawLine(left, top, right, bottom);
    DrawLine(right, top, left, bottom);
}

void ZDrawingContext::DrawString(const ZString& text, std::int32_t left, std::int32_t top,
                                 std::int32_t right, std::int32_t bottom, std::int32_t,
                                 std::int32_t align, std::int32_t)
{
    if (ZGraphics* const target = GetGraphics())
        target->DrawText(text, *FontOrDefault(), mPenColor, {left, top, right, bottom},
                         {toAlign(align), mTruncate});
}

void ZDrawingContext::DrawString(const ZString& text, const ZRect& rect, std::int32_t align)
{
    DrawString(text, rect.left, rect.top, rect.right, rect.bottom, 0, align, 1);
}

void ZDrawingContext::DrawBitmap(ZBitmap& bitmap, std::int32_t sourceLeft, std::int32_t sourceTop,
                                 std::int32_t sourceRight, std::int32_t sourceBottom,
                                 std::int32_t left, std::int32_t top, std::int32_t right,
                                 std::int32_t bottom, float alpha)
{
    bitmap.Load(nullptr);
    const ZImage* const image = bitmap.GetNativeFor(GetDeviceScale());
    ZGraphics* const target = GetGraphics();
    if (target && image)
        target->DrawImage(*image, {sourceLeft, sourceTop, sourceRight, sourceBottom},
                          {left, top, right, bottom}, alpha);
}

void ZDrawingContext::DrawBitmap(ZBitmap& bitmap, std::int32_t x, std::int32_t y, float alpha)
{
    bitmap.Load(nullptr);
    const ZRect source = bitmap.GetFrame();
    const ZRect target = source.Offset(x, y);
    DrawBitmap(bitmap, 0, 0, source.right, source.bottom, target.left, target.top, target.right,
               target.bottom, alpha);
}

void ZDrawingContext::DrawBitmap(ZBitmap& bitmap, const ZPoint& point, float alpha)
{
    DrawBitmap(bitmap, point.x, point.y, alpha);
}

void ZDrawingContext::Translate(std::int32_t x, std::int32_t y)
{
    if (ZGraphics* const target = GetGraphics())
        target->Translate(x, y);
}

void ZDrawingContext::Rotate(std::int32_t x, std::int32_t y, float degrees)
{
    ZGraphics* const target = GetGraphics();
    if (!target || !target->Translate(x, y))
        return;
    target->Rotate(degrees);
    target->Translate(-static_cast<double>(x), -static_cast<double>(y));
}

void ZDrawingContext::Scale(float horizontal, float vertical)
{
    ZGraphics* const target = GetGraphics();
    if (!target || !target->Scale(horizontal, vertical))
        return;
    mHorizontalScale = horizontal;
    mVerticalScale = vertical;
}

void ZDrawingContext::ResetTransform()
{
    if (ZGraphics* const target = GetGraphics())
        target->ResetTransform();
    mHorizontalScale = 1.0f;
    mVerticalScale = 1.0f;
}

void ZDrawingContext::SetAlphaBlend(bool on)
{
    if (ZGraphics* const target = GetGraphics())
        target->SetAlphaBlend(on);
}

void ZDrawingContext::SetAntiAlias(bool on)
{
    mAntiAlias = on;
    if (ZGraphics* const target = GetGraphics())
        target->SetAntiAlias(on);
}

void ZDrawingContext::SetPenWidth(float width)
{
    assert(mHorizontalScale != 0.0f || mVerticalScale != 0.0f);
    // Absolute values: a mirroring scale is negative.
    mPen.width = width / std::max(std::abs(mHorizontalScale), std::abs(mVerticalScale));
}

void ZDrawingContext::SetPenCaps(bool roundStart, bool roundEnd)
{
    mPen.roundStart = roundStart;
    mPen.roundEnd = roundEnd;
}

void ZDrawingContext::SetPenColor(const ZColor& color)
{
    mPenColor = color;
    mPen.color = color;
}

void ZDrawingContext::SetBrushColor(const ZColor& color)
{
    mBrushColor = color;
    mBrush = color;
}

void ZDrawingContext::SetFont(const boost::shared_ptr<ZFont>& font)
{
    mFont = font;
}

boost::shared_ptr<ZFont> ZDrawingContext::FontOrDefault() const
{
    return mFont ? mFont : ZFont::MakeDefault();
}

std::int32_t ZDrawingContext::StringWidth(const ZString& text) const
{
    const ZGraphics* const target = GetGraphics();
    return target ? target->MeasureText(text, *FontOrDefault()).right : 0;
}

std::int32_t ZDrawingContext::StringHeight(const ZString& text) const
{
    const ZGraphics* const target = GetGraphics();
    return target ? target->MeasureText(text, *FontOrDefault()).bottom : 0;
}

ZRect ZDrawingContext::StringBounds(const ZString& text, const ZRect& rect) const
{
    const ZGraphics* const target = GetGraphics();
    return target ? target->MeasureText(text, *FontOrDefault(), rect, mTruncate) : ZRect{};
}

void ZDrawingContext::SetTruncate(bool on)
{
    mTruncate = on;
}

void ZDrawingContext::SetClip(const ZRect& rect)
{
    if (ZGraphics* const target = GetGraphics())
        target->SetClip(rect);
}

void ZDrawingContext::SetClipPath(const ZPath& path)
{
    if (ZGraphics* const target = GetGraphics())
        target->SetClip(path.GetNative());
}

void ZDrawingContext::SetClip(const ZRegion& region)
{
    SetClip(region.GetBounds());
}

std::unique_ptr<ZSavedGraphicsState> ZDrawingContext::SaveState()
{
    ZGraphics* const target = GetGraphics();
    const std::int32_t level = target ? target->Save() : 0;
    return std::unique_ptr<ZSavedGraphicsState>(
        new ZSavedGraphicsState(target, level, mHorizontalScale, mVerticalScale));
}

void ZDrawingContext::RestoreState(std::unique_ptr<ZSavedGraphicsState>& saved)
{
    if (!saved)
        return;
    // If the target was replaced meanwhile, the saved state is not one of the new target's.
    ZGraphics* const target = GetGraphics();
    if (target && saved->mGraphics == target) {
        target->Restore(saved->mLevel);
        mHorizontalScale = saved->mHorizontalScale;
        mVerticalScale = saved->mVerticalScale;
    }
    saved.reset();
}

double ZDrawingContext::GetDeviceScale() const
{
    return mGraphics ? mGraphics->GetDeviceScale() : 1.0;
}

void ZDrawingContext::SetGraphics(ZGraphics* graphics)
{
    mGraphics = graphics;
    if (mGraphics)
        mGraphics->SetAntiAlias(mAntiAlias);
}

}  // namespace orvane
