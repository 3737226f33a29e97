// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZViewBackground.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/drawing/ZShader.h"
#include "zlib/common/drawing/ZShading.h"
#include "zlib/common/drawing/ZShadingFunction.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZViewTags.h"

#include <algorithm>
#include <cassert>
#include <optional>
#include <utility>

namespace orvane
{

namespace
{

using Background = ZViewBackground;

constexpr ZViewWord kBitmapWords[] = {
    {"origin", Background::kBitmapOrigin},
    {"center", Background::kBitmapCenter},
    {"stretch", Background::kBitmapStretch},
    {"stretchwidth", Background::kBitmapStretchWidth},
    {"stretchheight", Background::kBitmapStretchHeight},
    {"tile", Background::kBitmapTile},
};
constexpr ZViewWord kFrameWords[] = {
    {"off", Background::kFrameOff},
    {"rect", Background::kFrameRect},
    {"rounded", Background::kFrameRounded},
    {"debug", Background::kFrameDebug},
};
constexpr ZColor kDebugColor{255, 0, 0, 255};

/// Restores pen, brush and smoothing of a context at the end of the scope.
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

/// How a frame's path is painted.
struct Outline
{
    ZColor stroke;
    std::int32_t width = 1;
    std::optional<ZColor> fill = std::nullopt;
};

/// Returns the lines through the outermost pixels of a rectangle.
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

/// Half the smaller inner side is the largest radius that fits.
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

void drawScaled(ZDrawingContext& context, ZBitmap& bitmap, const ZRect& target)
{
    const ZRect source = bitmap.GetFrame();
    context.DrawBitmap(bitmap, source.left, source.top, source.right, source.bottom, target.left,
                       target.top, target.right, target.bottom, 1.0f);
}

}  // namespace

ZViewBackground::ZViewBackground() = default;

ZViewBackground::~ZViewBackground() = default;

// The order counts: each tag decides anew whether the background is painted.
void ZViewBackground::Read(const ZXMLElement& view, ZApplication* application)
{
    ReadColor(view);
    ReadBitmap(view, "bgbitmap", true, application);
    ReadBitmap(view, "backgrndbitmap", false, application);
    ReadFrame(view);
}

void ZViewBackground::ReadColor(const ZXMLElement& view)
{
    mIsPainted = readColorTag(view, "bgcolor", mColor);
    if (readColorTag(view, "backgrndcolor", mColor))
        mIsPainted = false;
}

void ZViewBackground::ReadBitmap(const ZXMLElement& view, std::string_view tag, bool isPainted,
                                 ZApplication* application)
{
    const auto bitmap = view.GetChild(tag);
    if (!bitmap)
        return;
    if (bitmap->HasAttribute("resource")) {
        mBitmap = std::make_unique<ZBitmap>(*bitmap, application);
        mBitmapStyle = readWord(*bitmap, "style", kBitmapWords).value_or(mBitmapStyle);
        mIsPainted = isPainted;
    }
    if (bitmap->HasAttribute("shader")) {
        mShaderName = ZString(bitmap->GetAttribute("shader"));
        mIsPainted = isPainted;
    }
}

void ZViewBackground::ReadFrame(const ZXMLElement& view)
{
    const auto frame = view.GetChild("frame");
    if (!frame)
        return;
    mFrame.style = readWord(*frame, "style", kFrameWords).value_or(mFrame.style);
    if (mFrame.style == kFrameRect || mFrame.style == kFrameRounded)
        mFrame.width = numberOr(*frame, "width", mFrame.width);
    if (mFrame.style == kFrameRounded)
        mFrame.radius = numberOr(*frame, "radius", mFrame.radius);
    readColorTag(*frame, "strokecolor", mFrame.strokeColor);
    readColorTag(*frame, "fillcolor", mFrame.fillColor);
    if (mFrame.style != kFrameOff)
        mIsPainted = true;
}

void ZViewBackground::Write(ZXMLElement& view) const
{
    const bool isPicture = mBitmap || !mShaderName.IsEmpty();
    writeColorTag(view, mIsPainted && !isPicture ? "bgcolor" : "backgrndcolor", mColor);
    if (isPicture)
        WriteBitmap(view);
    WriteFrame(view);
}

void ZViewBackground::WriteBitmap(ZXMLElement& view) const
{
    ZXMLElement bitmap(mIsPainted ? "bgbitmap" : "backgrndbitmap");
    if (!mShaderName.IsEmpty())
        bitmap.AddAttribute("shader", mShaderName.ToNarrow());
    else
        bitmap.AddAttribute("resource", mBitmap->GetResourceName().ToNarrow());
    bitmap.AddAttribute("style", wordOf(mBitmapStyle, kBitmapWords));
    view.AddChild(bitmap);
}

void ZViewBackground::WriteFrame(ZXMLElement& view) const
{
    const std::string_view style = wordOf(mFrame.style, kFrameWords);
    if (mFrame.style == kFrameOff || style.empty())
        return;
    ZXMLElement frame("frame");
    frame.AddAttribute("style", style);
    frame.AddAttribute("width", mFrame.width);
    frame.AddAttribute("radius", mFrame.radius);
    writeColorTag(frame, "strokecolor", mFrame.strokeColor);
    writeColorTag(frame, "fillcolor", mFrame.fillColor);
    view.AddChild(frame);
}

void ZViewBackground::SetBitmap(std::unique_ptr<ZBitmap> bitmap, BitmapStyle style)
{
    assert(bitmap);
    mBitmap = std::move(bitmap);
    mBitmapStyle = style;
    mIsPainted = true;
}

void ZViewBackground::MakeShadedBitmap(ZDrawingContext& context, const ZRect& frame,
                                       const ZString& shaderName)
{
    if (shaderName.IsEmpty() || (mBitmap && mBitmap->Suits(context)))
        return;
    const std::int32_t width = frame.GetWidth();
    const std::int32_t height = frame.GetHeight();
    auto bitmap = std::make_unique<ZBitmap>(width, height, &context);
    const ZShader shader({0, height / 2}, {width, height / 2}, *MakeShadingFunction(shaderName));
    bitmap->FillRect(shader, bitmap->GetFrame());
    mBitmap = std::move(bitmap);
}

void ZViewBackground::DrawBitmap(ZDrawingContext& context, const ZRect& frame) const
{
    assert(mBitmap);
    ZBitmap& bitmap = *mBitmap;
    bitmap.Load(nullptr);  // its size is asked for below
    if (!bitmap.IsLoaded())
        return;
    switch (mBitmapStyle) {
    case kBitmapCenter:
        return context.DrawBitmap(bitmap, frame.GetWidth() / 2 - bitmap.GetWidth() / 2,
                                  frame.GetHeight() / 2 - bitmap.GetHeight() / 2, 1.0f);
    case kBitmapStretch:
        return drawScaled(context, bitmap, frame);
    case kBitmapStretchWidth:
        return drawScaled(context, bitmap, {0, 0, frame.GetWidth(), bitmap.GetHeight()});
    case kBitmapStretchHeight:
        return drawScaled(context, bitmap, {0, 0, bitmap.GetWidth(), frame.GetHeight()});
    case kBitmapTile:
        return TileBitmap(context, frame);
    default:
        return DrawBitmapAtOrigin(context);
    }
}

void ZViewBackground::RepairBitmap(ZDrawingContext& context, std::span<const ZRect> parts) const
{
    assert(CanRepair());
    for (const ZRect& part : parts) {
        const ZSavedStateScope saved(context);
        context.SetClip(part);
        DrawBitmapAtOrigin(context);
    }
}

void ZViewBackground::DrawBitmapAtOrigin(ZDrawingContext& context) const
{
    assert(mBitmap);
    context.DrawBitmap(*mBitmap, 0, 0, 1.0f);
}

void ZViewBackground::TileBitmap(ZDrawingContext& context, const ZRect& frame) const
{
    ZBitmap& bitmap = *mBitmap;
    assert(bitmap.GetWidth() > 0 && bitmap.GetHeight() > 0);
    const std::int32_t columns = frame.GetWidth() / bitmap.GetWidth();
    const std::int32_t rows = frame.GetHeight() / bitmap.GetHeight();
    for (std::int32_t row = 0; row <= rows; ++row)
        for (std::int32_t column = 0; column <= columns; ++column)
            context.DrawBitmap(bitmap, column * bitmap.GetWidth(), row * bitmap.GetHeight(), 1.0f);
}

void ZViewBackground::DrawFrame(ZDrawingContext& context, const ZRect& frame,
                                const ZRect& update) const
{
    if (mBitmap && mFrame.style != kFrameOverBitmap)
        return;
    const PaintScope paint(context);
    if (mFrame.style == kFrameOff) {
        context.SetBrushColor(mColor);
        return context.FillRect(update);
    }
    const bool isRounded = mFrame.style == kFrameRounded;
    if (isRounded)
        addRoundedPath(context, frame, mFrame.width, mFrame.radius);
    else
        addRectPath(context, edgeOf(frame));
    context.SetAntiAlias(isRounded);
    Outline outline{.stroke = mFrame.strokeColor, .width = mFrame.width};
    if (mFrame.style == kFrameDebug)
        outline = {.stroke = kDebugColor};
    else if (mFrame.style != kFrameOverBitmap)
        outline.fill = mFrame.fillColor;
    paintPath(context, outline);
}

}  // namespace orvane
