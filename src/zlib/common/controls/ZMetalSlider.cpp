// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMetalSlider.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZFont.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <system_error>

namespace orvane
{

namespace
{

constexpr ZColor kGrooveLight{182, 182, 182, 255};
constexpr ZColor kGroove{0, 0, 0, 255};
constexpr float kGrooveWidth = 2.0f;
constexpr ZColor kMark{0, 0, 0, 117};
constexpr ZColor kMarkLight{255, 255, 255, 28};
constexpr ZColor kMarkText{51, 51, 51, 255};
constexpr std::int32_t kGapToGroove = 3;

}  // namespace

ZMetalSlider::ZMetalSlider(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZSlider(xml, application)
{
}

ZMetalSlider::~ZMetalSlider() = default;

bool ZMetalSlider::IsKindOf(std::string_view className) const
{
    return className == "ZMetalSliderClass" || ZSlider::IsKindOf(className);
}

const char* ZMetalSlider::GetClassName() const
{
    return "ZMetalSliderClass";
}

void ZMetalSlider::OnDetached()
{
    mScale.reset();
}

void ZMetalSlider::SizeChanged()
{
    mScale.reset();
    ZSlider::SizeChanged();
}

void ZMetalSlider::ReadRange()
{
    const float min = GetMin();
    const float max = GetMax();
    ZSlider::ReadRange();
    if (min != GetMin() || max != GetMax())
        mScale.reset();
}

void ZMetalSlider::SetThumbSize(std::int32_t size)
{
    mScale.reset();
    ZSlider::SetThumbSize(size);
}

void ZMetalSlider::SetThumbHeight(std::int32_t height)
{
    mScale.reset();
    ZSlider::SetThumbHeight(height);
}

void ZMetalSlider::SetScaleMarkCount(std::int32_t count)
{
    mScale.reset();
    ZSlider::SetScaleMarkCount(count);
}

void ZMetalSlider::DrawTrack(const ZRect& /*update*/)
{
    const std::int32_t h = GetThumbHeight() / 2;
    const std::int32_t s = GetThumbSize();
    const std::int32_t end = GetLength() - s;
    const ZSavedStateScope saved(*mContext);
    mContext->SetAntiAlias(true);
    mContext->SetPenWidth(kGrooveWidth);
    mContext->SetPenColor(kGrooveLight);
    if (IsVertical())
        mContext->DrawLine(h - 1, s, h - 1, end);
    else
        mContext->DrawLine(s, h + 1, end + 1, h + 1);
    mContext->SetPenColor(kGroove);
    if (IsVertical())
        mContext->DrawLine(h, s, h, end);
    else
        mContext->DrawLine(s, h, end, h);
}

void ZMetalSlider::DrawScale(const ZRect& /*update*/)
{
    if (GetScaleMarkCount() <= 0)
        return;
    if (!mScale || !mScale->Suits(*mContext))
        mScale = BuildScale();
    DrawBitmap(*mScale, 0, 0);
}

std::int32_t ZMetalSlider::GetLength() const
{
    return IsVertical() ? mFrame.GetHeight() : mFrame.GetWidth();
}

std::int32_t ZMetalSlider::GetMarkPosition(std::int32_t index) const
{
    const auto steps = static_cast<float>(std::max(GetScaleMarkCount() - 1, 1));
    const float spacing = static_cast<float>(GetLength() - 1 - 2 * GetThumbSize()) / steps;
    return GetThumbSize() + static_cast<std::int32_t>(static_cast<float>(index) * spacing);
}

float ZMetalSlider::GetMarkValue(std::int32_t index) const
{
    const auto steps = static_cast<float>(std::max(GetScaleMarkCount() - 1, 1));
    const float way = static_cast<float>(index) * Range() / steps;
    return IsVertical() ? GetMax() - way : GetMin() + way;
}

ZString ZMetalSlider::GetMarkText(float value) const
{
    return textWithTwoDecimals(value);
}

std::unique_ptr<ZBitmap> ZMetalSlider::BuildScale() const
{
    auto scale = std::make_unique<ZBitmap>(mFrame.GetWidth(), mFrame.GetHeight(), mContext.get());
    scale->SetAntiAlias(false);
    scale->SetFont(mFont);
    scale->SetPenWidth(1.0f);
    // At most one mark a pixel, however many the description asks for.
    const std::int32_t count = std::min(GetScaleMarkCount(), GetLength());
    for (std::int32_t i = 0; i < count; ++i) {
        DrawMark(*scale, i);
        if (DrawsScaleText())
            DrawMarkLabel(*scale, i);
    }
    return scale;
}

// A mark runs from below the groove to the view's edge, or to the label if marks have labels.
void ZMetalSlider::DrawMark(ZBitmap& scale, std::int32_t index) const
{
    assert(index >= 0 && index < GetScaleMarkCount());
    const std::int32_t at = GetMarkPosition(index);
    const std::int32_t begin = GetThumbHeight() / 2 + kGapToGroove;
    const ZString text = GetMarkText(GetMarkValue(index));
    std::int32_t end = (IsVertical() ? scale.GetWidth() : scale.GetHeight()) - 1;
    if (DrawsScaleText())
        end -= 1 + (IsVertical() ? scale.StringWidth(text) : scale.StringHeight(text));
    scale.SetPenColor(kMark);
    if (IsVertical())
        scale.DrawLine(begin, at, end, at);
    else
        scale.DrawLine(at, begin, at, end);
    scale.SetPenColor(kMarkLight);
    if (IsVertical())
        scale.DrawLine(begin, at + 1, end, at + 1);
    else
        scale.DrawLine(at + 1, begin, at + 1, end);
}

void ZMetalSlider::DrawMarkLabel(ZBitmap& scale, std::int32_t index) const
{
    const ZString text = GetMarkText(GetMarkValue(index));
    const std::int32_t at = GetMarkPosition(index);
    const std::int32_t width = scale.StringWidth(text);
    const std::int32_t height = scale.StringHeight(text);
    scale.SetPenColor(kMarkText);
    if (IsVertical())
        scale.DrawString(text,
                         {scale.GetWidth() - width, at - height / 2, scale.GetWidth(), at + height},
                         kAlignBegin);
    else
        scale.DrawString(
            text, {at - width, scale.GetHeight() - height, at + width + 1, scale.GetHeight()},
            kAlignCentre);
}

std::string textWithTwoDecimals(float value)
{
    std::array<char, 64> text;
    const double rounded = std::round(static_cast<double>(value) * 100.0) / 100.0;
    // Adding 0 turns -0 into 0.
    const auto end = std::to_chars(text.data(), text.data() + text.size(), rounded + 0.0);
    assert(end.ec == std::errc());
    return {text.data(), end.ptr};
}

}  // namespace orvane
