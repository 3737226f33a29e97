// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/PluginEntry.h"

#include "kestrune/common/views/KestruneFonts.h"
#include "pluginwrappers/common/ZVSTPlugin.h"
#include "pluginwrappers/core/PluginStart.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <memory>
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
