// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/MessageWith.h"
#include "support/SignedDescription.h"
#include "support/XmlOf.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/documents/ZWindowKeeper.h"

namespace orvane
{

/// Creates a plug-in's application with the description "test.xml", not started.
inline std::unique_ptr<ZPlugin> makePlugin(const ZResources& resources)
{
    auto plugin = std::make_unique<ZPlugin>(resources);
    plugin->SetStandalone(false);
    plugin->SetResourceName("test.xml");
    return plugin;
}

inline void start(ZPlugin& plugin)
{
    plugin.ZHandler::PostZMessage(boost::make_shared<ZMessage>(ZLOOPERSTART));
    plugin.ProcessQueue();
}

/// A window manager that records its messages.
struct WindowRecorder : ZWindowKeeper
{
    using ZWindowKeeper::ZWindowKeeper;
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        told.push_back(message);
    }
    [[nodiscard]] boost::shared_ptr<ZWindow> GetCurrentWindow() const override { return nullptr; }

    [[nodiscard]] std::vector<std::int32_t> Ids() const
    {
        std::vector<std::int32_t> ids;
        for (const auto& message : told)
            ids.push_back(message->GetId());
        return ids;
    }

    [[nodiscard]] std::int32_t GetTopLevel(std::int32_t window) const override
    {
        return window != 0 ? window : topLevel;
    }

    std::vector<boost::shared_ptr<const ZMessage>> told;
    std::int32_t topLevel = 0;
};

/// Gives the application a WindowRecorder as its window manager.
inline WindowRecorder& addWindows(ZApp& app)
{
    const auto before = ZWindowKeeper::SetMaker(
        [](const boost::shared_ptr<ZXMLElement>&, ZApp* owner) -> std::unique_ptr<ZWindowKeeper> {
            return std::make_unique<WindowRecorder>("windows", owner);
        });
    app.AddWindowManager(xmlOf("<windowmanager></windowmanager>"));
    ZWindowKeeper::SetMaker(before);
    return static_cast<WindowRecorder&>(*app.GetWindowManager());
}

}  // namespace orvane
