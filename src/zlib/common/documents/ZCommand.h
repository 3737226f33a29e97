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

/// A named action: a stored message and a target word that selects its receiver. Menu items and
/// buttons observe the command and show whether it is enabled and checked. [interface thread]
class ZCommand : public ZElement
{
public:
    /// The modifiers of a hot key: kPlain, plus kShift, plus kControl.
    static constexpr std::int32_t kPlain = 1;
    static constexpr std::int32_t kShift = 2;
    static constexpr std::int32_t kControl = 16;

    /// Reads a `command`. Throws what the constructor of its ZMessage throws. [setup]
    ZCommand(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZCommand() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZDOCUMENTCHANGED, ZDOCUMENTNEW ("NewDocument"): calls AttachDocument. ZELEMENTCHANGED of the
    /// followed element: checks or unchecks the command. Other messages are ignored.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Enable or disable the command and send the observers ZENABLE or ZDISABLE ("elementid").
    virtual void Enable();
    virtual void Disable();
    [[nodiscard]] virtual bool IsEnabled() const { return mEnabled; }
    /// These setters mark the command as changed; the observers are notified at the next tick.
    virtual void SetEnabled(bool enabled);
    virtual void Check() { SetChecked(true); }
    virtual void Uncheck() { SetChecked(false); }
    [[nodiscard]] virtual bool IsChecked() const { return mChecked; }
    virtual void SetChecked(bool checked);
    /// The number of the menu item, 0 until it is set.
    [[nodiscard]] virtual std::int32_t GetMenuId() const { return mMenuId; }
    virtual void SetMenuId(std::int32_t menuId) { mMenuId = menuId; }
    /// The label, in UTF-8. Null sets the empty text.
    [[nodiscard]] virtual const char* GetMenuName() const { return mMenuName.c_str(); }
    virtual void SetMenuName(const char* name);
    virtual void SetMessage(const boost::shared_ptr<const ZMessage>& message)
    {
        mMessage = message;
    }
    /// Returns the stored message, or null when the command has none.
    [[nodiscard]] virtual boost::shared_ptr<const ZMessage> GetMessage() const { return mMessage; }
    /// Calls the receiver's HandleZMessage with the stored message. Without a receiver it writes a
    /// trace line and does nothing else. Throws what the receiver throws.
    virtual void Dispatch();
    /// Lets the check mark follow the document's element with the name that the description gives;
    /// follows none when the document is null or has no such element.
    virtual void AttachDocument(const boost::shared_ptr<ZDocument>& document);

    /// Returns whether a dispatch would do something now: the command is enabled, has a receiver,
    /// and the document, if that is the one, can handle the message.
    [[nodiscard]] bool CanDispatch();
    /// Dispatches a copy of the message with the added field "CmdWindow".
    void DispatchFrom(std::int32_t window);

    /// The key code of the hot key, 0 for none, and its modifiers.
    [[nodiscard]] std::int8_t GetKey() const { return mKey; }
    [[nodiscard]] std::int32_t GetModifiers() const { return mModifiers; }

private:
    void ReadMenu(const ZXMLElement& menu);
    void ReadHotkey(const ZXMLElement& hotkey);
    void Send(const boost::shared_ptr<const ZMessage>& message);
    [[nodiscard]] ZHandler* FindReceiver(ZApp& app, std::int32_t messageId,
                                         ZDocument* document) const;
    void NotifyOfEnabling(std::int32_t messageId);
    void FollowElement();
    void StopFollowing();

    bool mEnabled = true;
    bool mChecked = false;
    boost::shared_ptr<ZXMLElement> mTooltip;  // of the description, or null
    std::int8_t mKey = 0;
    std::int32_t mModifiers = kPlain;
    std::string mMenuName;
    std::int32_t mMenuId = 0;
    std::string mTarget;
    boost::shared_ptr<const ZMessage> mMessage;
    boost::shared_ptr<ZElement> mObserved;  // the element that the check mark follows, or null
    std::string mElementName;               // the name of that element, empty for none
};

}  // namespace orvane
