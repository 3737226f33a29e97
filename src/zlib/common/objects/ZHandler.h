// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZObject.h"

#include <memory>

namespace orvane
{

class ZApplication;
class ZLooper;
class ZMessage;

/// An object that receives messages: all it does hangs on HandleZMessage, a switch on the id with a
/// call to the base for the rest. A handler belongs to at most one looper, which delivers what is
/// posted to it. There are two ways to reach it, and the sender chooses: calling HandleZMessage
/// runs it now, on the caller's thread; PostZMessage runs it later, on the looper's thread, in
/// order.
class ZHandler : public ZObject
{
public:
    /// With a looper the handler is entered in that looper's list.
    explicit ZHandler(std::string_view name = {}, ZLooper* looper = nullptr);
    /// The same with the name of the element's attribute.
    explicit ZHandler(const boost::shared_ptr<ZXMLElement>& xml, ZLooper* looper);
    /// Leaves the looper's list; what waits in its queue for this handler is never delivered.
    ~ZHandler() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Classes that are archived replace these two.
    /// Throws ZException -2: not implemented here.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;

    /// The application of the looper; without a looper, the one named last by SetCurrentApp.
    [[nodiscard]] virtual ZApplication* GetApp();
    /// Leaves the old looper's list and enters the new one's; null leaves only.
    virtual void SetLooper(ZLooper* looper);
    [[nodiscard]] virtual ZLooper* GetLooper();
    /// Receives a message, which nobody changes any more. Nothing here.
    virtual void HandleZMessage(boost::shared_ptr<const ZMessage> message);

    /// Posts to the handler's looper with this handler as target; does nothing without a looper.
    /// [any thread]
    void PostZMessage(boost::shared_ptr<const ZMessage> message);

    /// Expires with the handler: for whoever comes back to it after what may have been its end,
    /// such as a timer or a menu that was open. [the thread that owns the handler]
    [[nodiscard]] std::weak_ptr<const void> GetLife() const;

    /// Names the application that handlers without a looper belong to. [any thread]
    static void SetCurrentApp(ZApplication* app);
    /// Names none, if it is still this one that is named. [any thread]
    static void ClearCurrentApp(ZApplication* app);

private:
    friend class ZLooper;  // clears the pointer when it lets a handler go

    ZLooper* mLooper = nullptr;
    mutable std::shared_ptr<const void> mLife;  // made when it is first asked for
};

}  // namespace orvane
