// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneCorrectionMeter.h"

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/elements/ZValueText.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZViewTags.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace orvane
{

namespace
{

constexpr ZColor kBarGround{51, 51, 51, 255};
constexpr ZColor kBar{255, 204, 102, 255};
constexpr ZColor kScaleText{212, 212, 212, 255};
constexpr ZColor kTickLight{225, 225, 225, 255};
constexpr ZColor kTickDark{88, 88, 88, 255};
constexpr std::int32_t kScaleWidth = 24;  // of the labels' column, in pixels

ZString wholeNumber(float value)
{
    return ZString(std::to_string(std::lround(value)));
}

}  // namespace

KestruneCorrectionMeter::KestruneCorrectionMeter(const boost::shared_ptr<ZXMLElement>& xml,
                                                 ZApplication* application)
    : ZControl(xml, application)
    , mMeterFrame(GetFrame())
    , mTip(*this, [this] { return TellCents(); })
{
    readNamedRect(*xml, "meterframe", mMeterFrame);
    SetAnimated(true);
}

bool KestruneCorrectionMeter::IsKindOf(std::string_view className) const
{
    return className == "KestruneCorrectionMeterClass" || ZControl::IsKindOf(className);
}

const char* KestruneCorrectionMeter::GetClassName() const
{
    return "KestruneCorrectionMeterClass";
}

boost::shared_ptr<ZXMLElement> KestruneCorrectionMeter::ExtractHeader() const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractHeader\n");
}

void KestruneCorrectionMeter::ExtractBody(const boost::shared_ptr<ZXMLElement>& /*xml*/) const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractBody\n");
}

float KestruneCorrectionMeter::ReadCents() const
{
    const float cents = GetValue();
    return std::isfinite(cents) ? cents : 0.0f;
}

void KestruneCorrectionMeter::IdleTick()
{
    const float cents = ReadCents();
    if (cents == mShownCents)
        return;
    mShownCents = cents;
    Invalidate(mMeterFrame.left, mMeterFrame.top, mMeterFrame.right, mMeterFrame.bottom);
    mTip.Update();
}

ZHoverTip::Content KestruneCorrectionMeter::TellCents() const
{
    const auto [top, bottom] = BarRows();
    return {signedValueText(std::round(ReadCents()), ZElement::kCents),
            {mMeterFrame.left, top, mMeterFrame.right, bottom}};
}

// A value outside the range gives a bar that reaches beyond the view, which clips it.
std::int32_t KestruneCorrectionMeter::BarLength() const
{
    if (!mElement || mElement->Range() == 0.0f)
        return 0;
    constexpr float kOutsideAnyWindow = 1e6f;
    const float pixelsPerCent = static_cast<float>(mMeterFrame.GetHeight()) / mElement->Range();
    const float length = pixelsPerCent * ReadCents();
    return static_cast<std::int32_t>(std::clamp(length, -kOutsideAnyWindow, kOutsideAnyWindow));
}

void KestruneCorrectionMeter::Draw(const ZRect& rect)
{
    DrawBar();
    // Moving the bar invalidates no more than the meter frame, which usually lies beside the scale.
    if (rect.left < std::max(mMeterFrame.left, kScaleWidth))
        DrawScale();
}

// Heights are measured from the view's upper edge, where the bar's rectangle begins, too.
void KestruneCorrectionMeter::DrawBar()
{
    mBrushColor = kBarGround;
    FillRect(mMeterFrame);
    const auto [top, bottom] = BarRows();
    if (top == bottom)
        return;
    mBrushColor = kBar;
    FillRect({mMeterFrame.left + 1, top, mMeterFrame.right - 1, bottom});
}

std::pair<std::int32_t, std::int32_t> KestruneCorrectionMeter::BarRows() const
{
    const std::int32_t middle = mMeterFrame.GetHeight() / 2;
    return std::minmax({middle, middle - BarLength()});
}

void KestruneCorrectionMeter::DrawScale()
{
    const ZSavedStateScope saved(*mContext);
    mContext->SetAntiAlias(true);
    const std::int32_t height = mMeterFrame.GetHeight();
    const std::int32_t middle = height / 2;
    DrawTick(mMeterFrame.top + 1);
    DrawTick(middle);
    DrawTick(height - 1);
    mPenColor = kScaleText;
    const ZString zero("0");
    const std::int32_t halfLine = (StringHeight(zero) + 1) / 2;
    DrawLabel(zero, middle - halfLine, 2 * halfLine);
    if (mElement) {
        const ZString highest = wholeNumber(mElement->Max());
        DrawLabel(highest, mMeterFrame.top, StringHeight(highest) + 1);
        const ZString lowest = wholeNumber(mElement->Min());
        const std::int32_t line = StringHeight(lowest) + 1;
        DrawLabel(lowest, height - line, line);
    }
    mContext->SetAntiAlias(false);
}

void KestruneCorrectionMeter::DrawTick(std::int32_t y)
{
    const std::int32_t left = mMeterFrame.left - 5;
    const std::int32_t right = mMeterFrame.left - 1;
    mPenColor = kTickLight;
    DrawLine(left, y, right, y);
    mPenColor = kTickDark;
    DrawLine(left, y + 1, right, y + 1);
}

void KestruneCorrectionMeter::DrawLabel(const ZString& text, std::int32_t top, std::int32_t height)
{
    DrawString(text, {0, top, kScaleWidth, top + height}, 0, kAlignEnd, 0);
}

}  // namespace orvane
