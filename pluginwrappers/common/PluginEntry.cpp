// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/PluginEntry.h"

#include "kestrune/common/identity/KestruneIdentity.h"
#include "kestrune/common/views/KestruneFonts.h"
#include "pluginwrappers/common/ZVSTPlugin.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "resources/KestruneResources.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZMessageBoxWindow.h"

#include <boost/make_shared.hpp>

#include <memory>
#include <utility>

namespace orvane
{

namespace
{

// The one question that hosts bear while they load a plug-in.
bool speaksTheInterface(audioMasterCallback audioMaster)
{
    return audioMaster != nullptr &&
           audioMaster(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) != 0;
}

// The application with all that its description names, and its parameters.
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
    // Delivers what the start has marked while nobody takes values out to the host: defaults are no
    // automation, and must not come after a state that the host restores.
    app->Tick();
    return app;
}

}  // namespace

AEffect* openPlugin(audioMasterCallback audioMaster) noexcept
{
    try {
        if (!speaksTheInterface(audioMaster))
            return nullptr;
        const ZInterfaceLock lock;
        std::unique_ptr<ZPlugin> app = startApplication();
        ZPlugin& application = *app;
        auto plugin = std::make_unique<ZVSTPlugin>(audioMaster, std::move(app));
        plugin->SetWantsMidi(true);
        application.InitLooper();
        addProductFonts(application);
        return plugin.release()->getAeffect();
    } catch (const ZException& exception) {
        if (exception.GetCode() != ZException::kEndWithoutReport)
            reportCurrentException();
    } catch (...) {
        reportCurrentException();
    }
    return nullptr;
}

}  // namespace orvane
