// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/PluginStart.h"

#include "kestrune/common/identity/KestruneIdentity.h"
#include "resources/KestruneResources.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/documents/ZErrorDialog.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZMessageBoxWindow.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>

namespace orvane
{

namespace
{

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

}  // namespace

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

}  // namespace orvane
