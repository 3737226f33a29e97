// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZObject.h"

#include <memory>

namespace orvane
{

class ZApplication;
class ZLooper;
class ZMessage;

/// An object that receives messages. HandleZMessage of a derived class is a switch on the message's
/// id, which passes the other messages to the base. A handler belongs to at most one looper, which
/// delivers the messages posted to it. A sender has two ways: HandleZMessage handles the message
/// at once, on the caller's thread; PostZMessage has it handled later, in order, on the looper's
/// thread.
class ZHandler : public ZObject
{
public:
    /// Adds the handler to the list of the looper, if there is one. [looper's thread]
    explicit ZHandler(std::string_view name = {}, ZLooper* looper = nullptr);
    /// The same; the name is the element's attribute `name`.
    explicit ZHandler(const boost::shared_ptr<ZXMLElement>& xml, ZLooper* looper);
    /// Removes the handler from the looper's list and its messages from the looper's queue.
    ~ZHandler() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Both throw ZException kNotImplemented. Classes that are archived override them.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;

    /// The looper's application; without a looper the one that SetCurrentApp has set.
    [[nodiscard]] virtual ZApplication* GetApp();
    /// Moves the handler from the old looper's list to the new one's; null only removes it.
    virtual void SetLooper(ZLooper* looper);
    [[nodiscard]] virtual ZLooper* GetLooper();
    /// Handles a message. ZHandler itself ignores every message.
    virtual void HandleZMessage(boost::shared_ptr<const ZMessage> message);

    /// Posts to the handler's looper, with this handler as target. Does nothing without a looper.
    /// [any thread]
    void PostZMessage(boost::shared_ptr<const ZMessage> message);

    /// A pointer that expires with the handler. A timer or an open menu that returns to the handler
    /// later asks it whether the handler still exists. [the thread that owns the handler]
    [[nodiscard]] std::weak_ptr<const void> GetLife() const;

    /// Sets the application that handlers without a looper belong to. [any thread]
    static void SetCurrentApp(ZApplication* app);
    /// Sets none, unless another application has been set meanwhile. [any thread]
    static void ClearCurrentApp(ZApplication* app);

private:
    friend class ZLooper;  // clears mLooper when it removes a handler

    ZLooper* mLooper = nullptr;
    mutable std::shared_ptr<const void> mLife;  // made by the first GetLife
};

}  // namespace orvane
