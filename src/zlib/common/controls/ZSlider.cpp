// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZSlider.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/elements/ZValueText.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZEditGesture.h"
#include "zlib/common/views/ZViewTags.h"
#include "zlib/common/views/ZWindow.h"

#include <algorithm>
#include <cassert>
#include <memory>

namespace orvane
{

namespace
{

constexpr float kStepPercent = 1.0f;
constexpr float kPagePercent = 10.0f;
constexpr float kFine = 0.1f;  // what is left of a move with Shift held

/// How far a key moves the value, in percent of the range; 0 for other keys.
float percentOf(const ZNativeKeyEvent& key)
{
    switch (key.code) {
    case kKeyRight:
    case kKeyUp:
        return kStepPercent;
    case kKeyLeft:
    case kKeyDown:
        return -kStepPercent;
    case kKeyPageUp:
        return kPagePercent;
    case kKeyPageDown:
        return -kPagePercent;
    default:
        return 0.0f;
    }
}

}  // namespace

ZSlider::ZSlider(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZControl(xml, application)
    , mThumbRange(numberOr(*xml, "thumbrange", 0))
    , mBackgroundPicture(readBitmap(*xml, "background", application))
    , mThumbBitmap(readBitmap(*xml, "thumb", application))
    , mVertical(xml->AttributeIs("orient", "vertical"))
    , mThumbSize(numberOr(*xml, "thumbsize", 0))
    , mThumbHeight(numberOr(*xml, "thumbheight", 0))
    , mScaleMarkCount(numberOr(*xml, "numberscalemarks", 0))
    , mDrawScaleText(xml->GetAttributeBool("drawscaletext"))
{
    const bool hasEnabled = readNamedColor(*xml, "enabledtrail", mEnabledTrailColor);
    const bool hasDisabled = readNamedColor(*xml, "disabledtrail", mDisabledTrailColor);
    mDrawTrail = hasEnabled || hasDisabled;
    SetNavigable(true);
    ZSlider::ComputeTrackLength();
}

bool ZSlider::IsKindOf(std::string_view className) const
{
    return className == "ZSliderClass" || ZControl::IsKindOf(className);
}

const char* ZSlider::GetClassName() const
{
    return "ZSliderClass";
}

void ZSlider::ElementChanged(std::uint64_t elementId)
{
    if (!mElement || elementId != elementIdOf(mElement.get())) {
        ZControl::ElementChanged(elementId);
        return;
    }
    ComputeTrackLength();
    ReadRange();
    mValue = mElement->GetZFloat();
    Invalidate();
    UpdateTip();
}

void ZSlider::OnElementAttached()
{
    ZControl::OnElementAttached();
    if (mElement)
        ElementChanged(elementIdOf(mElement.get()));
}

void ZSlider::SizeChanged()
{
    ComputeTrackLength();
    ReadRange();
    Invalidate();
}

void ZSlider::ReadRange()
{
    if (!mElement)
        return;
    mMin = mElement->Min();
    mMax = mElement->Max();
}

void ZSlider::ComputeTrackLength()
{
    const std::int32_t length = mVertical ? mFrame.GetHeight() : mFrame.GetWidth();
    mTrackLength = mThumbRange >= 1 ? mThumbRange : length - 2 * mThumbSize;
}

void ZSlider::SetThumbSize(std::int32_t size)
{
    assert(size >= 0);
    mThumbSize = size;
    ComputeTrackLength();
    Invalidate();
}

void ZSlider::SetThumbHeight(std::int32_t height)
{
    assert(height >= 0);
    mThumbHeight = height;
    Invalidate();
}

void ZSlider::SetThumbBitmap(const boost::shared_ptr<ZBitmap>& bitmap)
{
    mThumbBitmap = bitmap;
    Invalidate();
}

void ZSlider::SetScaleMarkCount(std::int32_t count)
{
    assert(count >= 0);
    mScaleMarkCount = count;
    Invalidate();
}

std::int32_t ZSlider::Along(const ZPoint& point) const
{
    return mVertical ? point.y : point.x;
}

// Elements accept values outside their range and NaN: an outside value puts the thumb at the
// nearest end of the track, NaN at its start.
std::int32_t ZSlider::ThumbOffset() const
{
    if (Range() == 0.0f || mTrackLength <= 0)
        return 0;
    const float distance = mVertical ? mMax - GetValue() : GetValue() - mMin;
    // The order matters for NaN: std::min returns NaN, and then std::max returns 0.
    const float fraction = std::max(0.0f, std::min(distance / Range(), 1.0f));
    return static_cast<std::int32_t>(fraction * static_cast<float>(mTrackLength));
}

ZRect ZSlider::GetThumbRect() const
{
    const ZRect thumb =
        mThumbBitmap ? mThumbBitmap->GetFrame() : ZRect{0, 0, mThumbSize, mThumbSize};
    return mVertical ? thumb.Offset(0, ThumbOffset()) : thumb.Offset(ThumbOffset(), 0);
}

void ZSlider::MouseDown(const ZPoint& point, std::uint32_t mods)
{
    if (!mElement || (mods & kMouseAlt) != 0)
        return;
    const ZRect thumb = GetThumbRect();
    const std::int32_t length = mVertical ? thumb.GetHeight() : thumb.GetWidth();
    mGrabOffset =
        thumb.ContainsWithEdges(point) ? Along(point) - Along({thumb.left, thumb.top}) : length / 2;
    mLastAt = ValueAt(point);
    mPutBack = 0.0f;
    const auto life = GetLife();
    SetMouseCapture(true, true);
    if (life.expired())
        return;
    TrackMouse(point, mods);
    UpdateTip();
}

void ZSlider::MouseDoubleClick(const ZPoint& /*point*/, std::uint32_t /*mods*/)
{
    if (mElement)
        RestoreDefault();
}

void ZSlider::MouseMoved(const ZPoint& point, std::uint32_t mods)
{
    TrackMouse(point, mods);
}

void ZSlider::MouseUp(const ZPoint& point, std::uint32_t mods)
{
    if (mElement && (mods & kMouseAlt) != 0)
        RestoreDefault();
    else if (HasMouseCapture())
        TrackMouse(point, mods);
    // The capture also ends if the element was detached during the drag.
    const auto life = GetLife();
    SetMouseCapture(false, true);
    if (!life.expired())
        UpdateTip();
}

void ZSlider::RestoreDefault()
{
    assert(mElement);
    const auto element = mElement;  // calling the host may detach the view's element
    const ZEditGesture edit(ElementUnlessHeld());
    element->SetZFloat(element->GetZFloatDefault(), false);
}

boost::shared_ptr<ZElement> ZSlider::ElementUnlessHeld() const
{
    return HasMouseCapture() ? nullptr : mElement;
}

void ZSlider::MouseWheel(const ZPoint& /*point*/, std::uint32_t mods, std::int32_t axis,
                         std::int32_t delta)
{
    if (!mElement)
        return;
    const ZEditGesture edit(ElementUnlessHeld());
    const auto notches = static_cast<float>(axis != 0 ? delta : -delta);
    NudgePercent((mods & kMouseShift) != 0 ? kFine * notches : notches);
}

void ZSlider::TrackMouse(const ZPoint& point, std::uint32_t mods)
{
    const float at = ValueAt(point);
    if ((mods & kMouseShift) != 0)
        mPutBack += (1.0f - kFine) * (at - mLastAt);
    mLastAt = at;
    WriteValue(at - mPutBack);
}

bool ZSlider::WantsKey(const ZNativeKeyEvent& key) const
{
    return ValueAfter(key).has_value();
}

void ZSlider::KeyDown(const ZNativeKeyEvent& key)
{
    const auto value = ValueAfter(key);
    if (!value)
        return;
    const auto element = mElement;  // calling the host may detach the view's element
    const ZEditGesture edit(ElementUnlessHeld());
    element->SetZFloatClamped(*value, false);
}

std::optional<float> ZSlider::ValueAfter(const ZNativeKeyEvent& key) const
{
    if (!mElement || key.control || key.alt)
        return std::nullopt;
    if (key.code == kKeyHome)
        return mMin;
    if (key.code == kKeyEnd)
        return mMax;
    const float percent = percentOf(key) * (key.shift ? kFine : 1.0f);
    if (percent == 0.0f)
        return std::nullopt;
    return GetValue() + Range() * percent / 100.0f;
}

void ZSlider::MouseEntered(const ZPoint& /*point*/)
{
    mPointedAt = true;
    UpdateTip();
}

void ZSlider::MouseLeft()
{
    mPointedAt = false;
    UpdateTip();
}

// The window takes the capture away right after this call.
void ZSlider::OnCaptureLost()
{
    mPointedAt = false;
    if (mWindow && !mHasFocus)
        mWindow->GetValueTip().Hide(*this);
}

void ZSlider::SetFocus(bool focus)
{
    mHasFocus = focus;
    UpdateTip();
}

void ZSlider::UpdateTip()
{
    if (!mWindow)
        return;
    if (mElement && (mPointedAt || mHasFocus || HasMouseCapture()))
        mWindow->GetValueTip().Show(*this, valueText(GetValue(), mElement->GetUnits()),
                                    GetThumbRect());
    else
        mWindow->GetValueTip().Hide(*this);
}

// On a track without length every point means the start of the track.
float ZSlider::ValueAt(const ZPoint& point) const
{
    if (mTrackLength <= 0)
        return mVertical ? mMax : mMin;
    const float way = static_cast<float>(std::int64_t{Along(point)} - mGrabOffset) * Range() /
                      static_cast<float>(mTrackLength);
    return mVertical ? mMax - way : mMin + way;
}

void ZSlider::WriteValue(float value)
{
    if (mElement)
        mElement->SetZFloat(std::max(mMin, std::min(value, mMax)), false);
}

void ZSlider::Draw(const ZRect& update)
{
    DrawTrack(update);
    DrawScale(update);
    DrawThumb(update);
}

void ZSlider::DrawTrack(const ZRect& /*update*/)
{
    if (mBackgroundPicture)
        DrawBitmap(*mBackgroundPicture, 0, 0);
    if (mDrawTrail)
        DrawTrail();
}

// Draws a line from the minimum's end of the track to the thumb.
void ZSlider::DrawTrail()
{
    const ZColor kept = mPenColor;
    mPenColor = IsEnabled() ? mEnabledTrailColor : mDisabledTrailColor;
    const ZRect thumb = GetThumbRect();
    const std::int32_t middle = mThumbHeight / 2;
    if (mVertical)
        DrawLine(middle, thumb.bottom, middle, mFrame.bottom - mThumbSize);
    else
        DrawLine(mThumbSize, middle, thumb.left, middle);
    mPenColor = kept;
}

void ZSlider::DrawThumb(const ZRect& /*update*/)
{
    const ZRect thumb = GetThumbRect();
    if (mThumbBitmap) {
        DrawBitmap(*mThumbBitmap, thumb.left, thumb.top);
        return;
    }
    DrawRect({thumb.left, thumb.top, thumb.right - 1, thumb.bottom - 1});
}

}  // namespace orvane
