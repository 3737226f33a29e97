// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZPluginBackground.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZPath.h"
#include "zlib/common/drawing/ZShader.h"
#include "zlib/common/drawing/ZShading.h"
#include "zlib/common/drawing/ZShadingFunction.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZViewTags.h"

#include <array>

namespace orvane
{

namespace
{

constexpr ZColor kTitleEdge{0, 0, 0, 255};
constexpr ZColor kBelowTitleEdge{22, 22, 22, 255};
constexpr const char* kTitleShader = "ZNyquistTitleShader";

constexpr ZColor grey(std::uint8_t value)
{
    return {value, value, value, 255};
}

void drawColoredLine(ZBitmap& picture, const ZColor& color, const ZPoint& from, const ZPoint& to)
{
    picture.SetPenColor(color);
    picture.DrawLine(from, to);
}

// Light from the left and from above, three pixels deep.
void drawEdges(ZBitmap& picture)
{
    const ZRect f = picture.GetFrame();
    drawColoredLine(picture, grey(64), {f.left, f.top}, {f.left, f.bottom});
    drawColoredLine(picture, grey(61), {f.left + 1, f.bottom}, {f.left + 1, f.top});
    drawColoredLine(picture, grey(47), {f.left + 1, f.bottom}, {f.left + 2, f.top});
    drawColoredLine(picture, grey(89), {f.right, f.top}, {f.left, f.top});
    drawColoredLine(picture, grey(85), {f.right, f.top + 1}, {f.left, f.top + 1});
    drawColoredLine(picture, grey(61), {f.right, f.top + 2}, {f.left, f.top + 2});
}

}  // namespace

ZPluginBackground::ZPluginBackground(const boost::shared_ptr<ZXMLElement>& xml,
                                     ZApplication* application)
    : ZView(xml, application)
{
    if (const auto title = findTag(*xml, "rect", "name", "titleframe"))
        mTitleFrame = {numberOr(*title, "left", 0), numberOr(*title, "top", 0),
                       numberOr(*title, "width", 0), numberOr(*title, "height", 0)};
}

ZPluginBackground::~ZPluginBackground() = default;

bool ZPluginBackground::IsKindOf(std::string_view className) const
{
    return className == "ZPluginBackgroundClass" || ZView::IsKindOf(className);
}

const char* ZPluginBackground::GetClassName() const
{
    return "ZPluginBackgroundClass";
}

ZRegion ZPluginBackground::GetOpaqueRegion() const
{
    return ZRegion(mFrame);
}

void ZPluginBackground::DrawBackground(const ZRect& rect)
{
    const ZSavedStateScope saved(*mContext);
    if (!GetBackground().HasBitmap() || GetBackground().IsPainted())
        ZView::DrawBackground(rect);
    else
        GetBackground().DrawBitmapAtOrigin(*mContext);
}

void ZPluginBackground::OnDetached()
{
    mCache.reset();
}

void ZPluginBackground::Draw(const ZRect& /*update*/)
{
    if (!mCache || !mCache->Suits(*mContext))
        mCache = BuildPicture();
    DrawBitmap(*mCache, 0, 0);
}

std::unique_ptr<ZBitmap> ZPluginBackground::BuildPicture() const
{
    auto picture = std::make_unique<ZBitmap>(mFrame.GetWidth(), mFrame.GetHeight(), mContext.get());
    picture->SetAntiAlias(false);
    DrawTitleLines(*picture);
    drawEdges(*picture);
    DrawTitleBand(*picture);
    return picture;
}

void ZPluginBackground::DrawTitleLines(ZBitmap& picture) const
{
    const auto [left, top, width, height] = mTitleFrame;
    picture.SetPenWidth(2.0f);
    drawColoredLine(picture, kTitleEdge, {left, top}, {width, top});
    picture.SetPenWidth(1.0f);
    drawColoredLine(picture, kBelowTitleEdge, {left, top + 2}, {width, top + 2});
}

// A band with rounded lower corners.
void ZPluginBackground::DrawTitleBand(ZBitmap& picture) const
{
    const auto [left, top, right, height] = mTitleFrame;
    const std::array<ZPoint, 10> corners{{{right, top + 3},
                                          {right - 7, top + 6},
                                          {right - 10, top + 7},
                                          {right - 14, top + 8},
                                          {right - 22, top + 9},
                                          {left + 22, top + 9},
                                          {left + 14, top + 8},
                                          {left + 10, top + 7},
                                          {left + 7, top + 6},
                                          {left, top + 3}}};
    ZPath band;
    band.MoveTo({left, top + 3});
    for (const ZPoint& corner : corners)
        band.LineTo(corner);
    const auto function = MakeShadingFunction(kTitleShader);
    const ZShader shader({left, top + 4}, {right, top + 4}, *function);
    picture.SetClipPath(band);
    picture.FillRect(shader, picture.GetFrame());
}

}  // namespace orvane
