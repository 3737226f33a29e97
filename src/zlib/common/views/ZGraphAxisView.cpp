// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZGraphAxisView.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZLinearGradientShader.h"
#include "zlib/common/drawing/ZShader.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZViewTags.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <string>

namespace orvane
{

namespace
{

constexpr ZColor kTickDark{141, 141, 141, 255};
constexpr ZColor kTickLight{190, 190, 190, 255};
constexpr ZColor kGridDots{255, 255, 255, 32};
constexpr ZColor kLabel{0, 0, 0, 255};
constexpr ZColor kEdgeTop{64, 64, 64, 255};
constexpr ZColor kEdgeLeft{88, 88, 88, 255};
constexpr ZColor kEdgeRight{141, 141, 141, 255};
constexpr ZColor kEdgeBottom{190, 190, 190, 255};

// Sizes in pixels. A tick starts beside the plot and ends kTickReach away from it.
constexpr std::int32_t kLabelGap = 2;
constexpr std::int32_t kTickInset = 1;
constexpr std::int32_t kDotDistance = 4;
constexpr std::int32_t kTickReach = 5;

/// Replaces a view's context until the end of the scope.
class ContextScope
{
public:
    ContextScope(boost::shared_ptr<ZDrawingContext>& place,
                 boost::shared_ptr<ZDrawingContext> context)
        : mPlace(place)
        , mOther(std::move(context))
    {
        mPlace.swap(mOther);
    }
    ContextScope(const ContextScope&) = delete;
    ContextScope& operator=(const ContextScope&) = delete;
    ~ContextScope() { mPlace.swap(mOther); }

private:
    boost::shared_ptr<ZDrawingContext>& mPlace;
    boost::shared_ptr<ZDrawingContext> mOther;
};

/// Scales and cuts to a whole number, limited to coordinates outside any window.
std::int32_t scaled(float scale, std::int32_t pixels)
{
    constexpr float kOutsideAnyWindow = 1e6f;
    const float product = scale * static_cast<float>(pixels);
    if (std::isnan(product))
        return 0;
    return static_cast<std::int32_t>(std::clamp(product, -kOutsideAnyWindow, kOutsideAnyWindow));
}

/// Limits the number of ticks to one a pixel.
std::int32_t ticksOn(std::int32_t count, std::int32_t pixels)
{
    return std::clamp(count, 0, std::max(pixels, 0));
}

/// Returns the value at a part of an axis, from 0 to 1. A logarithmic axis is linear unless both
/// ends are above 0.
float valueAt(float part, float min, float range, bool logarithmic)
{
    assert(part >= 0.0f && part <= 1.0f);
    if (logarithmic && min > 0.0f && min + range > 0.0f)
        return min * std::pow((min + range) / min, part);
    return min + range * part;
}

/// Writes a decimal point whatever the host's locale is.
std::string decimal(float value, std::int32_t places)
{
    constexpr std::int32_t kMostPlaces = 9;
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::fixed, std::clamp(places, 0, kMostPlaces));
    return {text.data(), end.ptr};
}

std::string minutes(float seconds)
{
    const long whole = std::lround(std::abs(seconds));
    std::string text = seconds < 0.0f ? "-" : "";
    text += std::to_string(whole / 60);
    text += whole % 60 < 10 ? ":0" : ":";
    text += std::to_string(whole % 60);
    return text;
}

}  // namespace

ZGraphAxisView::ZGraphAxisView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZView(xml, application)
    , mGraphFrame(mFrame)
{
    ReadAttributes(*xml);
}

void ZGraphAxisView::ReadAttributes(const ZXMLElement& xml)
{
    readNamedRect(xml, "graphframe", mGraphFrame);
    readNamedColor(xml, "gradstartcolor", mGradStartColor);
    readNamedColor(xml, "gradendcolor", mGradEndColor);
    mXDecimalPlaces = numberOr(xml, "xaxisdecimalplaces", mXDecimalPlaces);
    mYDecimalPlaces = numberOr(xml, "yaxisdecimalplaces", mYDecimalPlaces);
    mXTickCount = numberOr(xml, "xaxisnumticks", mXTickCount);
    mYTickCount = numberOr(xml, "yaxisnumticks", mYTickCount);
    mXLogarithmic = xml.AttributeIs("xaxisstyle", "logarithmic");
    mYLogarithmic = xml.AttributeIs("yaxisstyle", "logarithmic");
    mXMinutes = xml.AttributeIs("xaxisstyle", "minutes");
    mYMinutes = xml.AttributeIs("yaxisstyle", "minutes");
}

bool ZGraphAxisView::IsKindOf(std::string_view className) const
{
    return className == "ZGraphAxisViewClass" || ZView::IsKindOf(className);
}

const char* ZGraphAxisView::GetClassName() const
{
    return "ZGraphAxisViewClass";
}

void ZGraphAxisView::Draw(const ZRect& /*rect*/)
{
    DrawBackground();
    DrawAxes();
}

void ZGraphAxisView::OnDetached()
{
    DropCaches();
    ZView::OnDetached();
}

void ZGraphAxisView::SizeChanged()
{
    ZView::SizeChanged();
    DropCaches();
}

void ZGraphAxisView::SetHorizontalScale(float scale)
{
    ZView::SetHorizontalScale(scale);
    DropCaches();
}

void ZGraphAxisView::SetVerticalScale(float scale)
{
    ZView::SetVerticalScale(scale);
    DropCaches();
}

void ZGraphAxisView::SetYRange(float range)
{
    mYRange = range;
    DropCaches();
}

void ZGraphAxisView::SetYMin(float min)
{
    mYMin = min;
    DropCaches();
}

void ZGraphAxisView::SetXMin(float min)
{
    mXMin = min;
    DropCaches();
}

void ZGraphAxisView::SetXWidth(float width)
{
    mXWidth = width;
    DropCaches();
}

void ZGraphAxisView::SetOrigin(const ZPoint& origin)
{
    mOrigin = origin;
    DropCaches();
}

void ZGraphAxisView::DropCaches()
{
    mBackgroundCache.reset();
    DropAxes();
}

void ZGraphAxisView::DropAxes()
{
    mLabelBitmap.reset();
    Invalidate();
}

ZPoint ZGraphAxisView::ToPlot(const ZPoint& place) const
{
    return {scaled(mHorizontalScale, place.x) - scaled(mHorizontalScale, mOrigin.x),
            scaled(mVerticalScale, place.y) - scaled(mVerticalScale, mOrigin.y)};
}

// No larger than the view, since the rest cannot be seen.
boost::shared_ptr<ZBitmap> ZGraphAxisView::PaintPicture(std::int32_t width, std::int32_t height,
                                                        void (ZGraphAxisView::*paint)())
{
    const auto picture = boost::make_shared<ZBitmap>(
        std::min(width, mFrame.GetWidth()), std::min(height, mFrame.GetHeight()), mContext.get());
    const ContextScope scope(mContext, picture);
    (this->*paint)();
    return picture;
}

void ZGraphAxisView::DrawBackground()
{
    if (mGraphFrame.IsEmpty())
        return;
    if (!mBackgroundCache || !mBackgroundCache->Suits(*mContext))
        mBackgroundCache = PaintPicture(mGraphFrame.GetWidth(), mGraphFrame.GetHeight(),
                                        &ZGraphAxisView::PaintBackground);
    DrawBitmap(*mBackgroundCache, mGraphFrame.left, mGraphFrame.top);
}

void ZGraphAxisView::PaintBackground()
{
    const ZRect plot{0, 0, mGraphFrame.GetWidth(), mGraphFrame.GetHeight()};
    const bool plain = mGradStartColor == mGradEndColor;
    mBrushColor = plain ? mGradStartColor : ZColor{0, 0, 0, 255};
    FillRect(plot);
    if (plain)
        return;
    const ZLinearGradientShader gradient(mGradStartColor, mGradEndColor, 0.5f, 0.25f);
    mContext->FillRect(ZShader({0, 0}, {0, plot.bottom}, gradient), plot);
}

void ZGraphAxisView::DrawAxes()
{
    if (!mLabelBitmap || !mLabelBitmap->Suits(*mContext))
        mLabelBitmap =
            PaintPicture(mFrame.GetWidth(), mFrame.GetHeight(), &ZGraphAxisView::PaintAxes);
    DrawBitmap(*mLabelBitmap, 0, 0);
}

void ZGraphAxisView::PaintAxes()
{
    {
        const ZSavedStateScope saved(*mContext);
        mContext->SetClip({0, mGraphFrame.bottom, mFrame.right, mFrame.bottom});
        DrawXAxis();
    }
    {
        // The clip includes the plot, for the dots across it.
        const ZSavedStateScope saved(*mContext);
        mContext->SetClip({0, mGraphFrame.top, mGraphFrame.right, mGraphFrame.bottom});
        DrawYAxis();
    }
    PaintEdges();
}

void ZGraphAxisView::PaintEdges()
{
    const std::int32_t right = mGraphFrame.right - 1;
    const std::int32_t bottom = mGraphFrame.bottom - 1;
    mPenColor = kEdgeTop;
    DrawLine(mGraphFrame.left, mGraphFrame.top, right, mGraphFrame.top);
    mPenColor = kEdgeLeft;
    DrawLine(mGraphFrame.left, mGraphFrame.top, mGraphFrame.left, bottom);
    mPenColor = kEdgeRight;
    DrawLine(right, mGraphFrame.top, right, bottom);
    mPenColor = kEdgeBottom;
    DrawLine(mGraphFrame.left, bottom, right, bottom);
}

void ZGraphAxisView::DrawXAxis()
{
    const std::int32_t width = mGraphFrame.GetWidth();
    const std::int32_t count = ticksOn(mXTickCount, std::min(width, mFrame.GetWidth()));
    for (std::int32_t k = 1; k <= count; ++k) {
        const float part = static_cast<float>(k) / static_cast<float>(count + 1);
        const std::int32_t x = mGraphFrame.left + scaled(part, width);
        DrawXTick(x);
        DrawXLabel(XLabel(valueAt(part, mXMin, mXWidth, mXLogarithmic)), x, width / (count + 1));
    }
}

void ZGraphAxisView::DrawYAxis()
{
    const std::int32_t height = mGraphFrame.GetHeight();
    const std::int32_t count = ticksOn(mYTickCount, std::min(height, mFrame.GetHeight()));
    for (std::int32_t k = 1; k <= count; ++k) {
        const float part = static_cast<float>(k) / static_cast<float>(count + 1);
        const std::int32_t y = mGraphFrame.bottom - scaled(part, height);
        DrawYTick(y);
        DrawYLabel(YLabel(valueAt(part, mYMin, mYRange, mYLogarithmic)), y);
    }
}

ZString ZGraphAxisView::XLabel(float value) const
{
    return ZString(mXMinutes ? minutes(value) : decimal(value, mXDecimalPlaces));
}

ZString ZGraphAxisView::YLabel(float value) const
{
    return ZString(mYMinutes ? minutes(value) : decimal(value, mYDecimalPlaces));
}

void ZGraphAxisView::DrawXTick(std::int32_t x)
{
    const std::int32_t top = mGraphFrame.bottom - 1 + kTickInset;
    const std::int32_t bottom = mGraphFrame.bottom - 1 + kTickReach;
    mPenColor = kTickDark;
    DrawLine(x, top, x, bottom);
    mPenColor = kTickLight;
    DrawLine(x + 1, top, x + 1, bottom);
}

void ZGraphAxisView::DrawXLabel(const ZString& text, std::int32_t x, std::int32_t width)
{
    mPenColor = kLabel;
    const std::int32_t top = mGraphFrame.bottom + kTickReach + kLabelGap;
    DrawString(text, {x - width / 2, top, x + width / 2, mFrame.bottom}, 0, kAlignCentre, 0);
}

void ZGraphAxisView::DrawYTick(std::int32_t y)
{
    const std::int32_t left = mGraphFrame.left - kTickReach;
    const std::int32_t right = mGraphFrame.left - kTickInset;
    mPenColor = kTickDark;
    DrawLine(left, y, right, y);
    mPenColor = kTickLight;
    DrawLine(left, y + 1, right, y + 1);
    mPenColor = kGridDots;
    const std::int32_t end = std::min(mGraphFrame.right, mFrame.right);
    for (std::int32_t x = mGraphFrame.left + kDotDistance; x < end; x += kDotDistance)
        DrawLine(x, y, x, y);
}

void ZGraphAxisView::DrawYLabel(const ZString& text, std::int32_t y)
{
    mPenColor = kLabel;
    const std::int32_t bottom = y + 1;
    DrawString(text, {0, bottom - StringHeight(text), mGraphFrame.left - kTickReach, bottom}, 0,
               kAlignEnd, 0);
}

}  // namespace orvane
