// SPDX-License-Identifier: GPL-3.0-or-later
// The drawing of a view: its walk, its background, and what its classes draw with.

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/drawing/ZMeasureScope.h"
#include "zlib/common/drawing/ZPath.h"
#include "zlib/common/drawing/ZShader.h"
#include "zlib/common/drawing/ZShading.h"
#include "zlib/common/drawing/ZShadingFunction.h"
#include "zlib/common/views/ZOverlay.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>

namespace orvane
{

namespace
{

constexpr ZColor kDebugColor{255, 0, 0, 255};

/// Gives pen, brush and smoothing of a context back as they were.
class PaintScope
{
public:
    explicit PaintScope(ZDrawingContext& context)
        : mContext(context)
        , mPenColor(context.GetPenColor())
        , mBrushColor(context.GetBrushColor())
        , mPenWidth(context.GetPenWidth())
        , mAntiAlias(context.IsAntiAlias())
    {
    }
    PaintScope(const PaintScope&) = delete;
    PaintScope& operator=(const PaintScope&) = delete;
    ~PaintScope()
    {
        mContext.SetPenColor(mPenColor);
        mContext.SetBrushColor(mBrushColor);
        mContext.SetPenWidth(mPenWidth);
        mContext.SetAntiAlias(mAntiAlias);
    }

private:
    ZDrawingContext& mContext;
    const ZColor mPenColor;
    const ZColor mBrushColor;
    const float mPenWidth;
    const bool mAntiAlias;
};

/// A frame's look.
struct Outline
{
    ZColor stroke;
    std::int32_t width = 1;
    std::optional<ZColor> fill = std::nullopt;
};

/// The pixels at the edge of a rectangle, as the lines that go through them.
ZRect edgeOf(const ZRect& rect)
{
    return {rect.left, rect.top, rect.right - 1, rect.bottom - 1};
}

void addRectPath(ZDrawingContext& context, const ZRect& edge)
{
    context.ResetPath();
    context.AddPathLine({edge.left, edge.top}, {edge.right, edge.top});
    context.AddPathLine({edge.right, edge.top}, {edge.right, edge.bottom});
    context.AddPathLine({edge.right, edge.bottom}, {edge.left, edge.bottom});
    context.ClosePath();
}

void addRoundedPath(ZDrawingContext& context, const ZRect& frame, std::int32_t width,
                    std::int32_t wantedRadius)
{
    const ZRect inner = edgeOf(frame).Inset(width / 2, width / 2);
    const std::int32_t side = std::min(inner.GetWidth(), inner.GetHeight());
    const std::int32_t radius = std::min(wantedRadius, side / 2);
    if (radius <= 0)
        return addRectPath(context, inner);
    context.ResetPath();
    context.AddPathArc({inner.left + radius, inner.top + radius}, radius, 180, 90);
    context.AddPathArc({inner.right - radius, inner.top + radius}, radius, 270, 90);
    context.AddPathArc({inner.right - radius, inner.bottom - radius}, radius, 0, 90);
    context.AddPathArc({inner.left + radius, inner.bottom - radius}, radius, 90, 90);
    context.ClosePath();
}

void paintPath(ZDrawingContext& context, const Outline& outline)
{
    if (outline.fill) {
        context.SetBrushColor(*outline.fill);
        context.FillPath();
    }
    context.SetPenColor(outline.stroke);
    context.SetPenWidth(static_cast<float>(outline.width));
    context.StrokePath();
    context.ResetPath();
}

}  // namespace

void ZView::Invalidate()
{
    Invalidate(mFrame.left, mFrame.top, mFrame.right, mFrame.bottom);
}

void ZView::Invalidate(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom)
{
    if (!mVisible || !mWindow)
        return;
    mDirty = true;
    ZRect rect = ZRect{left, top, right, bottom}.Offset(mWindowOrigin.x, mWindowOrigin.y);
    if (mParent)
        rect = rect.Intersection(
            mParent->mFrame.Offset(mParent->mWindowOrigin.x, mParent->mWindowOrigin.y));
    if (!rect.IsEmpty())
        mWindow->Invalidate(rect);
}

void ZView::InvalidatePart(const ZRect& rect)
{
    Invalidate(rect.left, rect.top, rect.right, rect.bottom);
}

void ZView::MarkSubtreeDirty()
{
    for (const auto& child : mSubviews) {
        child->mDirty = true;
        child->MarkSubtreeDirty();
    }
}

void ZView::MarkDirtyWithin(const ZRect& rect)
{
    for (const auto& child : mSubviews) {
        const ZRect part = child->mBounds.Intersection(rect);
        if (part.IsEmpty())
            continue;
        const ZPoint origin = child->OriginInParent();
        child->mDirty = true;
        child->MarkDirtyWithin(part.Offset(-origin.x, -origin.y));
    }
}

void ZView::AddOverlay(const boost::shared_ptr<ZOverlay>& overlay)
{
    if (!overlay || std::ranges::count(mOverlays, overlay) != 0)
        return;
    mOverlays.push_back(overlay);
    Invalidate();
}

void ZView::RemoveOverlay(const boost::shared_ptr<ZOverlay>& overlay)
{
    if (std::erase(mOverlays, overlay) != 0)
        Invalidate();
}

bool ZView::CanDraw() const
{
    return mContext && mContext->GetGraphics();
}

void ZView::DrawView(const ZRect& updateRect)
{
    if (!mVisible || !mBounds.Intersects(updateRect) || !CanDraw())
        return;
    const ZPoint origin = OriginInParent();
    const ZRect rect =
        mBounds.Intersection(updateRect).Offset(-origin.x, -origin.y).Intersection(mFrame);
    const ZSavedStateScope outer(*mContext);
    mContext->Translate(origin.x, origin.y);
    {
        const ZSavedStateScope inner(*mContext);
        mContext->SetClip(rect);
        DrawOwn(rect);
        for (const auto& child : mSubviews)
            child->DrawView(rect);
    }
    for (const auto& overlay : mOverlays)
        overlay->DrawOverlay(*mContext);
    DrawOver();
}

void ZView::DrawOwn(const ZRect& rect)
{
    ZRegion region(rect);
    if (mParent) {
        for (const auto& child : mSubviews) {
            if (!child->mVisible)
                continue;
            ZRegion opaque = child->GetOpaqueRegion();
            const ZPoint origin = child->OriginInParent();
            opaque.Translate(origin.x, origin.y);
            region.Subtract(opaque);
        }
    }
    if (region.IsEmpty())
        return;
    const ZRect part = region.GetBounds();
    // A bitmap at the origin is repaired where that is needed; all else is painted over the
    // children, too, so they have to paint again.
    const bool repairs = mBackgroundBitmap && mBitmapStyle == kBitmapOrigin && !mDirty;
    if (mDirty || (mHasBackground && !repairs))
        MarkDirtyWithin(part);
    if (mHasBackground)
        DrawBackground(part);
    if (mDirty)
        Draw(part);
    mDirty = false;
}

void ZView::Draw(const ZRect& /*rect*/)
{
}

void ZView::DrawBackground(const ZRect& rect)
{
    if (!mContext)
        return;
    if (!mBackgroundBitmap && !GetShaderName().IsEmpty())
        MakeShadedBitmap();
    if (mBackgroundBitmap)
        DrawBackgroundBitmap(rect);
    if (!mBackgroundBitmap || mFrameStyle == kFrameOverBitmap)
        DrawFrame(rect);
}

void ZView::MakeShadedBitmap()
{
    const std::int32_t width = mFrame.GetWidth();
    const std::int32_t height = mFrame.GetHeight();
    auto bitmap = std::make_unique<ZBitmap>(width, height, mContext.get());
    const ZShader shader({0, height / 2}, {width, height / 2},
                         *MakeShadingFunction(GetShaderName()));
    bitmap->FillRect(shader, bitmap->GetFrame());
    mBackgroundBitmap = std::move(bitmap);
}

void ZView::DrawBackgroundBitmap(const ZRect& rect)
{
    ZBitmap& bitmap = *mBackgroundBitmap;
    // Its size is asked for below.
    bitmap.Load(nullptr);
    if (!bitmap.IsLoaded())
        return;
    switch (mBitmapStyle) {
    case kBitmapCenter:
        return mContext->DrawBitmap(bitmap, mFrame.GetWidth() / 2 - bitmap.GetWidth() / 2,
                                    mFrame.GetHeight() / 2 - bitmap.GetHeight() / 2, 1.0f);
    case kBitmapStretch:
        return DrawBitmapPart(bitmap, bitmap.GetFrame(), mFrame);
    case kBitmapStretchWidth:
        return DrawBitmapPart(bitmap, bitmap.GetFrame(),
                              {0, 0, mFrame.GetWidth(), bitmap.GetHeight()});
    case kBitmapStretchHeight:
        return DrawBitmapPart(bitmap, bitmap.GetFrame(),
                              {0, 0, bitmap.GetWidth(), mFrame.GetHeight()});
    case kBitmapTile:
        return TileBitmap();
    default:
        if (mDirty)
            return mContext->DrawBitmap(bitmap, 0, 0, 1.0f);
        return RepairUnder(*this, {0, 0}, rect);
    }
}

void ZView::TileBitmap()
{
    ZBitmap& bitmap = *mBackgroundBitmap;
    const std::int32_t columns = mFrame.GetWidth() / bitmap.GetWidth();
    const std::int32_t rows = mFrame.GetHeight() / bitmap.GetHeight();
    for (std::int32_t row = 0; row <= rows; ++row)
        for (std::int32_t column = 0; column <= columns; ++column)
            mContext->DrawBitmap(bitmap, column * bitmap.GetWidth(), row * bitmap.GetHeight(),
                                 1.0f);
}

void ZView::RepairUnder(const ZView& view, const ZPoint& offset, const ZRect& rect)
{
    for (const auto& child : view.mSubviews) {
        const ZRect bounds = child->mBounds.Offset(offset.x, offset.y).Intersection(rect);
        // Nothing is painted in a hidden child, so nothing needs a clean ground there.
        if (!child->mVisible || bounds.IsEmpty())
            continue;
        if (child->mDirty && !child->mHasBackground) {
            const ZSavedStateScope saved(*mContext);
            mContext->SetClip(bounds);
            mContext->DrawBitmap(*mBackgroundBitmap, 0, 0, 1.0f);
            continue;
        }
        const ZPoint origin = child->OriginInParent();
        RepairUnder(*child, {offset.x + origin.x, offset.y + origin.y}, bounds);
    }
}

void ZView::DrawFrame(const ZRect& rect)
{
    const PaintScope paint(*mContext);
    if (mFrameStyle == kFrameOff) {
        mContext->SetBrushColor(mBackgroundColor);
        return mContext->FillRect(rect);
    }
    const bool isRounded = mFrameStyle == kFrameRounded;
    if (isRounded)
        addRoundedPath(*mContext, mFrame, mFrameWidth, mFrameRadius);
    else
        addRectPath(*mContext, edgeOf(mFrame));
    mContext->SetAntiAlias(isRounded);
    switch (mFrameStyle) {
    case kFrameDebug:
        return paintPath(*mContext, {.stroke = kDebugColor});
    case kFrameOverBitmap:
        return paintPath(*mContext, {.stroke = mStrokeColor, .width = mFrameWidth});
    default:
        return paintPath(*mContext,
                         {.stroke = mStrokeColor, .width = mFrameWidth, .fill = mFillColor});
    }
}

// What classes draw with.

std::int32_t ZView::StringWidth(const ZString& text) const
{
    if (!mContext)
        return 0;
    const ZMeasureScope scope(*mContext);
    mContext->SetFont(mFont);
    return mContext->StringWidth(text);
}

std::int32_t ZView::StringHeight(const ZString& text) const
{
    if (!mContext)
        return 0;
    const ZMeasureScope scope(*mContext);
    mContext->SetFont(mFont);
    return mContext->StringHeight(text);
}

void ZView::UsePen()
{
    mContext->SetPenColor(mPenColor);
    mContext->SetPenWidth(static_cast<float>(mPenWidth));
}

void ZView::DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2)
{
    if (!mContext)
        return;
    UsePen();
    mContext->DrawLine(x1, y1, x2, y2);
}

void ZView::DrawLine(const ZPoint& from, const ZPoint& to)
{
    DrawLine(from.x, from.y, to.x, to.y);
}

void ZView::DrawRect(const ZRect& rect)
{
    if (!mContext)
        return;
    UsePen();
    mContext->DrawRect(rect.left, rect.top, rect.right, rect.bottom);
}

void ZView::FillRect(const ZRect& rect)
{
    if (!mContext)
        return;
    mContext->SetBrushColor(mBrushColor);
    mContext->FillRect(rect);
}

void ZView::DrawEllipse(const ZRect& rect)
{
    if (!mContext)
        return;
    // As many corners as make the largest ellipse of a window look round.
    constexpr std::size_t kCorners = 128;
    const ZRect edge = edgeOf(rect);
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

void ZView::DrawArc(const ZPoint& centre, std::int32_t radius, std::int32_t startDegrees,
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

void ZView::DrawString(const ZString& text, const ZRect& rect, std::int32_t verticalAlign,
                       std::int32_t horizontalAlign, std::int32_t flags)
{
    if (!mContext)
        return;
    mContext->SetPenColor(mPenColor);
    mContext->SetFont(mFont);
    mContext->DrawString(text, rect.left, rect.top, rect.right, rect.bottom, verticalAlign,
                         horizontalAlign, flags);
}

void ZView::DrawBitmap(ZBitmap& bitmap, std::int32_t x, std::int32_t y)
{
    if (mContext)
        mContext->DrawBitmap(bitmap, x, y, 1.0f);
}

void ZView::DrawBitmapPart(ZBitmap& bitmap, const ZRect& source, const ZRect& target)
{
    if (mContext)
        mContext->DrawBitmap(bitmap, source.left, source.top, source.right, source.bottom,
                             target.left, target.top, target.right, target.bottom, 1.0f);
}

}  // namespace orvane
