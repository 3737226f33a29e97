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

/// The shipped description, started as the host shell starts it, with its parameters. It ticks when
/// a test says so, or from InitLooper on.
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
