// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZElement.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane
{

class ZApp;
class ZDocument;
class ZMessage;

/// A named action: a stored message and the word for who receives it. Views observe it, to show it
/// greyed or checked. [interface thread]
class ZCommand : public ZElement
{
public:
    /// What a hot key's modifiers add up to.
    static constexpr std::int32_t kPlain = 1;
    static constexpr std::int32_t kShift = 2;
    static constexpr std::int32_t kControl = 16;

    /// From a `command`. Throws ZException -1 when its message cannot be made. [setup]
    ZCommand(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZCommand() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZDOCUMENTCHANGED, ZDOCUMENTNEW ("NewDocument"): AttachDocument. ZELEMENTCHANGED of the
    /// element that it follows: the check mark. All else ends here.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// These two tell the observers at once, by ZENABLE or ZDISABLE with "elementid".
    virtual void Enable();
    virtual void Disable();
    [[nodiscard]] virtual bool IsEnabled() const { return mEnabled; }
    /// These tell them by a change of the element, at the next tick.
    virtual void SetEnabled(bool enabled);
    virtual void Check() { SetChecked(true); }
    virtual void Uncheck() { SetChecked(false); }
    [[nodiscard]] virtual bool IsChecked() const { return mChecked; }
    virtual void SetChecked(bool checked);
    /// 0 until it is set.
    [[nodiscard]] virtual std::int32_t GetMenuId() const { return mMenuId; }
    virtual void SetMenuId(std::int32_t menuId) { mMenuId = menuId; }
    [[nodiscard]] virtual const char* GetMenuName() const { return mMenuName.c_str(); }
    /// UTF-8; null for the empty text.
    virtual void SetMenuName(const char* name);
    virtual void SetMessage(const boost::shared_ptr<const ZMessage>& message)
    {
        mMessage = message;
    }
    /// Null when the command has none.
    [[nodiscard]] virtual boost::shared_ptr<const ZMessage> GetMessage() const { return mMessage; }
    /// Sends the message to the receiver, which handles it before this returns; does nothing but
    /// trace without a receiver.
    virtual void Dispatch();
    /// Follows the element of this document; null for none.
    virtual void AttachDocument(const boost::shared_ptr<ZDocument>& document);

    /// Dispatch from the menu of a window: with the field "CmdWindow" added to the message.
    void DispatchFrom(std::int32_t window);

    /// 0 for none.
    [[nodiscard]] std::int8_t GetKey() const { return mKey; }
    [[nodiscard]] std::int32_t GetModifiers() const { return mModifiers; }
    [[nodiscard]] const std::string& GetTarget() const { return mTarget; }
    /// The `tooltip` of the description; null when there is none.
    [[nodiscard]] const boost::shared_ptr<ZXMLElement>& GetTooltip() const { return mTooltip; }

private:
    void ReadMenu(const ZXMLElement& menu);
    void ReadHotkey(const ZXMLElement& hotkey);
    void Send(const boost::shared_ptr<const ZMessage>& message);
    [[nodiscard]] ZHandler* FindReceiver(ZApp& app, std::int32_t messageId,
                                         ZDocument* document) const;
    void TellObservers(std::int32_t messageId);
    void FollowElement();
    void StopFollowing();

    bool mEnabled = true;
    bool mChecked = false;
    boost::shared_ptr<ZXMLElement> mTooltip;
    std::int8_t mKey = 0;
    std::int32_t mModifiers = kPlain;
    std::string mMenuName;
    std::int32_t mMenuId = 0;
    std::string mTarget;
    boost::shared_ptr<const ZMessage> mMessage;
    boost::shared_ptr<ZElement> mObserved;  // what the check mark follows
    std::string mElementName;               // its name; empty for none
};

}  // namespace orvane
