#include "zlib/common/ZDrawingContext.h"

#include "zlib/common/ZBitmap.h"
#include "zlib/common/ZFont.h"
#include "zlib/common/ZPath.h"
#include "zlib/common/ZRegion.h"
#include "zlib/common/ZShader.h"

#include <algorithm>
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
    if (mGraphics)
        mGraphics->StrokeLine(mPen, {x1, y1}, {x2, y2});
}

void ZDrawingContext::DrawLine(const ZPoint& from, const ZPoint& to)
{
    DrawLine(from.x, from.y, to.x, to.y);
}

void ZDrawingContext::StrokePath()
{
    if (mGraphics)
        mGraphics->Stroke(mPen, mPath);
}

void ZDrawingContext::FillPath()
{
    if (mGraphics)
        mGraphics->Fill(mBrush, mPath);
}

void ZDrawingContext::FillRegion(const ZShader& shader, const ZRegion& region)
{
    if (mGraphics && shader.GetBrush())
        mGraphics->FillRegion(*shader.GetBrush(), region);
}

void ZDrawingContext::FillRect(const ZShader& shader, const ZRect& rect)
{
    if (mGraphics && shader.GetBrush())
        mGraphics->FillRect(*shader.GetBrush(), rect);
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
    if (mGraphics)
        mGraphics->StrokeRect(mPen, {left, top, right, bottom});
}

void ZDrawingContext::FillRect(std::int32_t left, std::int32_t top, std::int32_t right,
                               std::int32_t bottom)
{
    if (mGraphics)
        mGraphics->FillRect(mBrush, ZRect{left, top, right, bottom});
}

void ZDrawingContext::InvertRect(std::int32_t left, std::int32_t top, std::int32_t right,
                                 std::int32_t bottom)
{
    if (mGraphics)
        mGraphics->InvertRect({left, top, right, bottom});
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
    if (mGraphics)
        mGraphics->DrawText(text, *FontInForce(), mPenColor, {left, top, right, bottom},
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
    const ZImage* const image = bitmap.GetNative();
    if (mGraphics && image)
        mGraphics->DrawImage(*image, {sourceLeft, sourceTop, sourceRight, sourceBottom},
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
    if (mGraphics)
        mGraphics->Translate(x, y);
}

void ZDrawingContext::Rotate(std::int32_t x, std::int32_t y, float degrees)
{
    if (!mGraphics || !mGraphics->Translate(x, y))
        return;
    mGraphics->Rotate(degrees);
    mGraphics->Translate(-static_cast<double>(x), -static_cast<double>(y));
}

void ZDrawingContext::Scale(float horizontal, float vertical)
{
    if (!mGraphics || !mGraphics->Scale(horizontal, vertical))
        return;
    mHorizontalScale = horizontal;
    mVerticalScale = vertical;
}

void ZDrawingContext::ResetTransform()
{
    if (mGraphics)
        mGraphics->ResetTransform();
    mHorizontalScale = 1.0f;
    mVerticalScale = 1.0f;
}

void ZDrawingContext::SetAlphaBlend(bool on)
{
    if (mGraphics)
        mGraphics->SetAlphaBlend(on);
}

void ZDrawingContext::SetAntiAlias(bool on)
{
    mAntiAlias = on;
    if (mGraphics)
        mGraphics->SetAntiAlias(on);
}

void ZDrawingContext::SetPenWidth(float width)
{
    // By size: a mirroring scale does not make a line thinner than nothing.
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

boost::shared_ptr<ZFont> ZDrawingContext::FontInForce() const
{
    return mFont ? mFont : ZFont::MakeDefault();
}

std::int32_t ZDrawingContext::StringWidth(const ZString& text) const
{
    return mGraphics ? mGraphics->MeasureText(text, *FontInForce()).right : 0;
}

std::int32_t ZDrawingContext::StringHeight(const ZString& text) const
{
    return mGraphics ? mGraphics->MeasureText(text, *FontInForce()).bottom : 0;
}

ZRect ZDrawingContext::StringBounds(const ZString& text, const ZRect& rect) const
{
    return mGraphics ? mGraphics->MeasureText(text, *FontInForce(), rect, mTruncate) : ZRect{};
}

void ZDrawingContext::SetTruncate(bool on)
{
    mTruncate = on;
}

void ZDrawingContext::SetClip(const ZRect& rect)
{
    if (mGraphics)
        mGraphics->SetClip(rect);
}

void ZDrawingContext::SetClipPath(const ZPath& path)
{
    if (mGraphics)
        mGraphics->SetClip(path.GetNative());
}

void ZDrawingContext::SetClip(const ZRegion& region)
{
    SetClip(region.GetBounds());
}

std::unique_ptr<ZSavedGraphicsState> ZDrawingContext::SaveState()
{
    const std::int32_t level = mGraphics ? mGraphics->Save() : 0;
    return std::unique_ptr<ZSavedGraphicsState>(
        new ZSavedGraphicsState(mGraphics, level, mHorizontalScale, mVerticalScale));
}

void ZDrawingContext::RestoreState(std::unique_ptr<ZSavedGraphicsState>& saved)
{
    if (!saved)
        return;
    // A target that came since has states of its own, none of them this one.
    if (mGraphics && saved->mGraphics == mGraphics) {
        mGraphics->Restore(saved->mLevel);
        mHorizontalScale = saved->mHorizontalScale;
        mVerticalScale = saved->mVerticalScale;
    }
    saved.reset();
}

void ZDrawingContext::SetGraphics(ZGraphics* graphics)
{
    mGraphics = graphics;
    if (mGraphics)
        mGraphics->SetAntiAlias(mAntiAlias);
}

}  // namespace orvane
