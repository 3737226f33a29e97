// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/identity/KestruneIdentity.h"
#include "resources/KestruneResources.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <memory>

namespace orvane
{

/// Starts the product with its shipped description as the host shell does, with its parameters. It
/// ticks when the test calls Tick(), or by itself from InitLooper() on.
inline std::unique_ptr<ZPlugin> startProduct()
{
    auto plugin = std::make_unique<ZPlugin>(kestruneResources());
    plugin->SetStandalone(false);
    plugin->SetResourceName(descriptionResourceName());
    plugin->ZHandler::PostZMessage(boost::make_shared<ZMessage>(ZLOOPERSTART));
    plugin->ProcessQueue();
    plugin->ExposeElements(*plugin->GetCurrentDocument());
    plugin->Tick();
    return plugin;
}

}  // namespace orvane
