// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZControl.h"

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr float kWideRange = 100.0f;
constexpr float kCoarseNudge = 1.0f;
constexpr float kFineNudge = 0.1f;

}  // namespace

ZControl::ZControl(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZView(xml, application)
    , mNudgeAmount(xml->GetFloat("nudgeamount"))
{
}

bool ZControl::IsKindOf(std::string_view className) const
{
    return className == "ZControlClass" || ZView::IsKindOf(className);
}

const char* ZControl::GetClassName() const
{
    return "ZControlClass";
}

void ZControl::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZENABLE:
        SetEnabled(true);
        break;
    case ZDISABLE:
        SetEnabled(false);
        break;
    default:
        ZView::HandleZMessage(message);
        break;
    }
}

void ZControl::OnElementAttached()
{
    if (mNudgeAmount == 0.0f && mElement && mElement->GetType() == ZElement::ZFLOAT)
        SetNudgeAmount(mElement->Range() >= kWideRange ? kCoarseNudge : kFineNudge);
}

void ZControl::SendAction()
{
    if (!mActionMessage)
        return;
    ZHandler& receiver = mElement ? static_cast<ZHandler&>(*mElement) : *this;
    receiver.HandleZMessage(mActionMessage);
}

float ZControl::GetValue() const
{
    return mElement ? mElement->GetZFloat() : 0.0f;
}

void ZControl::SetValue(float value)
{
    if (mElement)
        mElement->SetZFloat(value, false);
}

void ZControl::Nudge(std::int32_t direction)
{
    assert(direction == 1 || direction == -1);
    if (!mElement)
        return;
    const float value = mElement->GetZFloat() + static_cast<float>(direction) * mNudgeAmount;
    if (value >= mElement->Min() && value <= mElement->Max())
        mElement->SetZFloat(value, false);
}

void ZControl::SetEnabled(bool enabled)
{
    mEnabled = enabled;
    Invalidate();
}

void ZControl::NudgePercent(float percent)
{
    assert(std::isfinite(percent));
    if (mElement)
        mElement->SetZFloatClamped(mElement->GetZFloat() + mElement->Range() * percent / 100.0f,
                                   false);
}

}  // namespace orvane
