// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZMessage;

/// A view through which the user changes a float or discrete element. It writes the element, and
/// its picture follows once the element reports the change. [interface thread]
class ZControl : public ZView
{
public:
    ZControl(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZENABLE, ZDISABLE: SetEnabled. The rest as ZView.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// A float element gives the control a nudge amount where the description gave none: 1, or 0.1
    /// for a range below 100.
    void OnElementAttached() override;

    /// Sends the action message to the element, or without one to the control itself; nothing
    /// without a message.
    virtual void SendAction();
    /// The element's, 0 without one. This and the next three throw ZException -1 for an element
    /// that is not a float.
    [[nodiscard]] virtual float GetValue() const;
    virtual void SetValue(float value);
    /// A step of the nudge amount, up for 1 and down for -1, unless it would leave the range.
    virtual void Nudge(std::int32_t direction);
    virtual void SetEnabled(bool enabled);
    [[nodiscard]] virtual float GetNudgeAmount() const { return mNudgeAmount; }
    virtual void SetNudgeAmount(float amount) { mNudgeAmount = amount; }
    virtual void SetTag(std::int32_t tag) { mTag = tag; }
    [[nodiscard]] virtual std::int32_t GetTag() const { return mTag; }

    /// Moves the value by a part of the range, as far as the range allows.
    void NudgePercent(float percent);
    [[nodiscard]] bool IsEnabled() const { return mEnabled; }
    /// What SendAction sends; null for nothing.
    void SetActionMessage(const boost::shared_ptr<const ZMessage>& message)
    {
        mActionMessage = message;
    }

private:
    std::int32_t mTag = 0;
    bool mEnabled = true;
    boost::shared_ptr<const ZMessage> mActionMessage;
    float mNudgeAmount = 0.0f;  // in units of the element; 0 until it is set
};

}  // namespace orvane
