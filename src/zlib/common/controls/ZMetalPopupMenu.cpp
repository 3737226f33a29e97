// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMetalPopupMenu.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZPath.h"
#include "zlib/common/drawing/ZShader.h"
#include "zlib/common/drawing/ZShadingFunction.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZViewTags.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>

namespace orvane
{

namespace
{

constexpr std::int32_t kCorner = 6;
constexpr std::int32_t kCapWidth = 17;
constexpr std::int32_t kArrowFromRight = 13;
constexpr std::int32_t kUpArrowTop = 4;
constexpr std::int32_t kDownArrowBottom = 15;
constexpr float kArrowScale = 0.5f;
constexpr ZColor kCap{176, 176, 176, 255};
constexpr ZColor kArrow{0, 0, 0, 255};
constexpr ZColor kOutline{0, 0, 0, 128};
constexpr float kOutlineWidth = 2.0f;

using Shades = std::array<std::uint8_t, 18>;
// Grey levels of the rows 1 to 18; row 0 keeps the tint.
constexpr Shades kBodyShades{251, 249, 246, 245, 245, 245, 245, 245, 233,
                             233, 233, 233, 233, 234, 236, 239, 244, 134};
constexpr Shades kCapShades{227, 209, 206, 201, 199, 194, 191, 186, 169,
                            154, 148, 142, 137, 132, 127, 124, 146, 137};

void addBody(ZPath& path, std::int32_t width, std::int32_t height)
{
    path.AddArc({kCorner, kCorner}, kCorner, 180, 90);
    path.AddArc({width - kCorner, kCorner}, kCorner, 270, 90);
    path.AddArc({width - kCorner, height - kCorner}, kCorner, 0, 90);
    path.AddArc({kCorner, height - kCorner}, kCorner, 90, 90);
}

void addCap(ZPath& path, std::int32_t width, std::int32_t height)
{
    path.MoveTo({width - kCapWidth, 0});
    path.AddArc({width - kCorner, kCorner}, kCorner, 270, 90);
    path.AddArc({width - kCorner, height - kCorner}, kCorner, 0, 90);
    path.LineTo({width - kCapWidth, height});
}

/// A gradient that has the shade of each row in its middle.
class ShadesOfRows : public ZShadingFunction
{
public:
    explicit ShadesOfRows(const Shades& shades)
        : mShades(shades)
    {
    }

    /// From the upper edge of the first row to the lower edge of the last one.
    [[nodiscard]] boost::shared_ptr<ZGradientBrush> MakeBrush(const ZPoint& from,
                                                              const ZPoint& to) const override
    {
        std::array<ZGradientBrush::Stop, std::tuple_size_v<Shades>> stops{};
        for (std::size_t row = 0; row < stops.size(); ++row) {
            const std::uint8_t grey = mShades[row];
            const float middle = static_cast<float>(row) + 0.5f;
            stops[row] = {middle / static_cast<float>(stops.size()), {grey, grey, grey, 255}};
        }
        return ZGradientBrush::Make(from, to, stops);
    }

private:
    const Shades& mShades;
};

void drawShades(ZDrawingContext& context, const Shades& shades, std::int32_t left,
                std::int32_t right)
{
    constexpr std::int32_t kRows{std::tuple_size_v<Shades>};
    const ZShader shader({0, 1}, {0, 1 + kRows}, ShadesOfRows(shades));
    context.FillRect(shader, {left, 1, right + 1, 1 + kRows});
}

void drawCap(ZDrawingContext& context, std::int32_t width, std::int32_t height)
{
    ZPath cap;
    addCap(cap, width, height);
    const ZSavedStateScope saved(context);
    context.SetBrushColor(kCap);
    context.SetClipPath(cap);
    context.FillRect(0, 0, width, height);
    drawShades(context, kCapShades, width - kCapWidth, width);
}

/// Draws an arrow that points up for a positive scale and down for a negative one.
void drawArrow(ZDrawingContext& context, const ZPoint& at, float verticalScale)
{
    constexpr std::array<ZPoint, 4> kTriangle{{{12, 8}, {0, 8}, {6, 0}, {12, 8}}};
    ZPath arrow;
    arrow.AddLines(kTriangle);
    const ZSavedStateScope saved(context);
    context.Translate(at.x, at.y);
    context.Scale(kArrowScale, verticalScale);
    context.SetBrushColor(kArrow);
    context.AddPath(arrow);
    context.FillPath();
    context.ResetPath();
}

}  // namespace

ZMetalPopupMenu::ZMetalPopupMenu(const boost::shared_ptr<ZXMLElement>& xml,
                                 ZApplication* application)
    : ZPopupMenu(xml, application)
{
    readColorTag(*xml, "tintcolor", mTintColor);
}

bool ZMetalPopupMenu::IsKindOf(std::string_view className) const
{
    return className == "ZMetalPopupMenuClass" || ZPopupMenu::IsKindOf(className);
}

const char* ZMetalPopupMenu::GetClassName() const
{
    return "ZMetalPopupMenuClass";
}

void ZMetalPopupMenu::Draw(const ZRect& update)
{
    if (!GetMenuBitmap() || !GetMenuBitmap()->Suits(*mContext))
        DrawMetal();
    ZPopupMenu::Draw(update);
}

ZRect ZMetalPopupMenu::GetTextRect() const
{
    ZRect rect = ZPopupMenu::GetTextRect();
    rect.right = std::min(rect.right, mFrame.right - kCapWidth);
    return rect;
}

void ZMetalPopupMenu::DrawMetal()
{
    const std::int32_t width = mFrame.GetWidth();
    const std::int32_t height = mFrame.GetHeight();
    const auto metal = boost::make_shared<ZBitmap>(width, height, mContext.get());
    ZPath body;
    addBody(body, width, height);
    metal->SetAntiAlias(true);
    metal->SetBrushColor(mTintColor);
    metal->SetClipPath(body);
    metal->FillRect(0, 0, width, height);
    drawShades(*metal, kBodyShades, 0, width);
    drawCap(*metal, width, height);
    drawArrow(*metal, {width - kArrowFromRight, kUpArrowTop}, kArrowScale);
    drawArrow(*metal, {width - kArrowFromRight, kDownArrowBottom}, -kArrowScale);
    metal->SetPenColor(kOutline);
    metal->SetPenWidth(kOutlineWidth);
    metal->AddPath(body);
    metal->ClosePath();
    metal->StrokePath();
    metal->ResetPath();
    SetMenuBitmap(metal);
}

}  // namespace orvane
