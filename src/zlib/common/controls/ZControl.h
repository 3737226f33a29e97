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
    /// Handles ZENABLE and ZDISABLE by SetEnabled(); ZView handles all other messages.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// Sets the nudge amount for a float element, unless the description or a caller has set one:
    /// 1 for a range of 100 or more, else 0.1.
    void OnElementAttached() override;

    /// Sends the action message to the element or, without an element, to the control itself. Does
    /// nothing while no action message is set.
    virtual void SendAction();
    /// Returns the element's value, or 0 without an element. Throws ZException kGeneral if the
    /// element is not a float.
    [[nodiscard]] virtual float GetValue() const;
    /// Writes the element's value; does nothing without an element. Throws as GetValue() does.
    virtual void SetValue(float value);
    /// Moves the value by direction (1 or -1) times the nudge amount, unless that would leave the
    /// range. Throws as GetValue() does.
    virtual void Nudge(std::int32_t direction);
    /// Stores whether the control takes input, and repaints it.
    virtual void SetEnabled(bool enabled);
    /// In units of the element.
    [[nodiscard]] virtual float GetNudgeAmount() const { return mNudgeAmount; }
    virtual void SetNudgeAmount(float amount) { mNudgeAmount = amount; }
    /// A number for the owner of the control, which gives it no meaning of its own.
    virtual void SetTag(std::int32_t tag) { mTag = tag; }
    [[nodiscard]] virtual std::int32_t GetTag() const { return mTag; }

    /// Moves the value by a percentage of the range and clamps it to the range.
    void NudgePercent(float percent);
    [[nodiscard]] bool IsEnabled() const { return mEnabled; }
    /// Sets the message that SendAction() sends; null for none.
    void SetActionMessage(const boost::shared_ptr<const ZMessage>& message)
    {
        mActionMessage = message;
    }

private:
    std::int32_t mTag = 0;
    bool mEnabled = true;
    boost::shared_ptr<const ZMessage> mActionMessage;
    float mNudgeAmount = 0.0f;  // in units of the element; 0 while it is not set
};

}  // namespace orvane
