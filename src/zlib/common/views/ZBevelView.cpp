// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZBevelView.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/drawing/ZPath.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZViewTags.h"

#include <cassert>

namespace orvane
{

namespace
{

constexpr std::int32_t kCornerRadius = 5;
constexpr ZColor kShade{0, 0, 0, 64};
constexpr ZColor kInnerShade{124, 124, 124, 128};
constexpr ZColor kLight{255, 255, 255, 48};
constexpr ZColor kLowerLight{255, 255, 255, 117};

/// Returns base + step * (high - low) / steps, channel by channel; steps > 0.
ZColor blend(const ZColor& base, const ZColor& high, const ZColor& low, std::int32_t step,
             std::int32_t steps)
{
    assert(steps > 0);
    const auto channel = [=](std::uint8_t from, std::uint8_t upper, std::uint8_t lower) {
        return static_cast<std::uint8_t>(from + step * (upper - lower) / steps);
    };
    return {channel(base.red, high.red, low.red), channel(base.green, high.green, low.green),
            channel(base.blue, high.blue, low.blue), channel(base.alpha, high.alpha, low.alpha)};
}

}  // namespace

ZBevelView::ZBevelView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZView(xml, application)
    , mBevelSize(numberOr(*xml, "bevelsize", 0))
    , mRadius(numberOr(*xml, "radius", 0))
{
    readNamedColor(*xml, "bevelhighlight", mBevelHighlight);
    readNamedColor(*xml, "bevellowlight", mBevelLowlight);
    readNamedColor(*xml, "bevelbase", mBevelBase);
}

bool ZBevelView::IsKindOf(std::string_view className) const
{
    return className == "ZBevelViewClass" || ZView::IsKindOf(className);
}

const char* ZBevelView::GetClassName() const
{
    return "ZBevelViewClass";
}

boost::shared_ptr<ZXMLElement> ZBevelView::ExtractHeader() const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractHeader\n");
}

void ZBevelView::ExtractBody(const boost::shared_ptr<ZXMLElement>& /*xml*/) const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractBody\n");
}

void ZBevelView::Draw(const ZRect& update)
{
    if (GetBackground().HasBitmap())
        DrawBackground(update);
    if (mRadius == 0)
        DrawSquare(update);
    else
        DrawRounded(update);
}

std::int32_t ZBevelView::GetCornerRadius() const
{
    const std::int32_t height = mFrame.GetHeight();
    const std::int32_t radius = height < 2 * kCornerRadius ? height / 2 : kCornerRadius;
    return 2 * radius > mFrame.GetWidth() ? mFrame.GetWidth() / 2 : radius;
}

void ZBevelView::DrawRounded(const ZRect& /*update*/)
{
    const ZSavedStateScope saved(*mContext);
    mContext->SetAntiAlias(true);
    mContext->SetPenWidth(1.0f);
    StrokeTopLeft();
    StrokeBottomRight();
}

void ZBevelView::StrokeTopLeft()
{
    const auto [l, t, r, b] = mFrame;
    const std::int32_t q = GetCornerRadius();
    const ZPoint corner{l + q, t + q + 1};
    ZPath outer;
    outer.MoveTo({l, b - q});
    outer.AddArc(corner, q, 180, 90);
    outer.LineTo({r - q, t + 1});
    Stroke(outer, kShade);
    ZPath inner;
    inner.MoveTo({l + 1, b - q - 1});
    inner.AddArc(corner, q - 1, 180, 90);
    Stroke(inner, kInnerShade);
    mContext->SetPenColor(kShade);
    mContext->DrawLine(l + q, t + 2, r - q, t + 2);
}

void ZBevelView::StrokeBottomRight()
{
    const auto [l, t, r, b] = mFrame;
    const std::int32_t q = GetCornerRadius();
    const ZPoint topRight{r - q, t + q + 1};
    const ZPoint bottomRight{r - q, b - q};
    const ZPoint bottomLeft{l + q, b - q};
    ZPath outer;
    outer.MoveTo({r - q, t + 1});
    outer.AddArc(topRight, q, 270, 90);
    outer.AddArc(bottomRight, q, 0, 90);
    outer.AddArc(bottomLeft, q, 90, 90);
    Stroke(outer, kLight);
    ZPath inner;
    inner.MoveTo({r - q - 1, t + 2});
    inner.AddArc(topRight, q - 1, 270, 90);
    inner.AddArc(bottomRight, q - 1, 0, 90);
    Stroke(inner, kLight);
    ZPath lower;
    lower.MoveTo({r - q, b});
    lower.AddArc(bottomLeft, q - 1, 90, 90);
    Stroke(lower, kLowerLight);
}

void ZBevelView::Stroke(const ZPath& path, const ZColor& color)
{
    mContext->SetPenColor(color);
    mContext->ResetPath();
    mContext->AddPath(path);
    mContext->StrokePath();
    mContext->ResetPath();
}

// The outermost lines have the full highlight and lowlight.
void ZBevelView::DrawSquare(const ZRect& /*update*/)
{
    const auto [l, t, r, b] = mFrame;
    for (std::int32_t i = mBevelSize; i >= 1; --i) {
        const std::int32_t inset = mBevelSize - i;
        mContext->SetPenWidth(1.0f);
        mContext->SetPenColor(blend(mBevelBase, mBevelHighlight, mBevelBase, i, mBevelSize));
        mContext->DrawLine(l + inset, t + inset, r - 1 - inset, t + inset);
        mContext->DrawLine(l + inset, t + inset, l + inset, b - 1 - inset);
        mContext->SetPenColor(blend(mBevelBase, mBevelLowlight, mBevelBase, i, mBevelSize));
        mContext->DrawLine(l + inset, b - 1 - inset, r - 1 - inset, b - 1 - inset);
        mContext->DrawLine(r - 1 - inset, t + inset, r - 1 - inset, b - 1 - inset);
    }
}

}  // namespace orvane
