#pragma once

#include "kestrune/common/KestruneClasses.h"
#include "kestrune/common/KestruneIdentity.h"
#include "resources/KestruneResources.h"
#include "zlib/common/ZDocument.h"
#include "zlib/common/ZMessage.h"
#include "zlib/common/ZMessageIds.h"
#include "zlib/common/ZPlugin.h"
#include "zlib/common/ZViewClasses.h"
#include "zlib/common/ZWindowManager.h"

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
    registerKestruneClasses(plugin->GetClassRegistry());
    registerViewClasses(plugin->GetClassRegistry());
    plugin->SetWindowKeeperMaker(&ZWindowManager::Make);
    plugin->ZHandler::PostZMessage(boost::make_shared<ZMessage>(ZLOOPERSTART));
    plugin->ProcessQueue();
    plugin->ExposeElements(*plugin->GetCurrentDocument());
    plugin->Tick();
    return plugin;
}

}  // namespace orvane
