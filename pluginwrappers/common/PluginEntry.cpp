// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/PluginEntry.h"

#include "kestrune/common/identity/KestruneIdentity.h"
#include "kestrune/common/views/KestruneFonts.h"
#include "pluginwrappers/common/ZVSTPlugin.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "resources/KestruneResources.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/documents/ZErrorDialog.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZMessageBoxWindow.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

// Sends audioMasterVersion, the only opcode that is safe while a host loads a plug-in.
bool hostHasVersion(audioMasterCallback audioMaster)
{
    return audioMaster != nullptr &&
           audioMaster(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) != 0;
}

// Returns a started application, with the managers of its description and its parameters.
std::unique_ptr<ZPlugin> startApplication()
{
    auto app = std::make_unique<ZPlugin>(kestruneResources());
    app->SetIdentifier(applicationIdentifier());
    app->SetName(productName());
    ZMessageBoxWindow::Install();
    app->SetStandalone(false);
    app->SetResourceName(descriptionResourceName());
    app->PostZMessage(boost::make_shared<ZMessage>(ZLOOPERSTART), app.get());
    app->ProcessQueue();
    if (const auto document = app->GetDocumentManager()->GetCurrentDocument())
        app->ExposeElements(*document);
    // Delivers the changes of the start-up before a parameter function is set: the host must not
    // get defaults as automation, least of all after it has restored a state.
    app->Tick();
    return app;
}

/// Returns a line about the exception that is being handled; empty for an end without a report.
std::string describeCurrentException()
{
    std::string text = "unknown exception";
    try {
        throw;
    } catch (const ZException& exception) {
        if (exception.GetCode() == ZException::kEndWithoutReport)
            return {};
        text = exception.GetMessage().ToNarrow() + " (code " + std::to_string(exception.GetCode()) +
               ")";
    } catch (const std::exception& exception) {
        text = exception.what();
    } catch (...) {
    }
    std::ranges::replace(text, '\n', ' ');
    return text;
}

// A message box would need the interface thread, which has ended with the failed instance.
void reportFailedLoad() noexcept
try {
    const std::string text = describeCurrentException();
    if (text.empty())
        return;
    const std::string title = std::string(productName()) + " could not be loaded";
    std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
    startErrorDialog(title, text);
} catch (...) {
    // There is no memory left for a report.
}

}  // namespace

AEffect* openPlugin(audioMasterCallback audioMaster) noexcept
{
    try {
        if (!hostHasVersion(audioMaster))
            return nullptr;
        const ZInterfaceLock lock;
        std::unique_ptr<ZPlugin> app = startApplication();
        ZPlugin& application = *app;
        auto plugin = std::make_unique<ZVSTPlugin>(audioMaster, std::move(app));
        plugin->SetWantsMidi(true);
        application.InitLooper();
        addProductFonts(application);
        return plugin.release()->getAeffect();
    } catch (...) {
        reportFailedLoad();
    }
    return nullptr;
}

}  // namespace orvane
