#include "pluginwrappers/common/PluginEntry.h"

#include "pluginwrappers/common/VstOpcodes.h"
#include "pluginwrappers/common/ZVSTPlugin.h"
#include "zlib/common/ZException.h"
#include "zlib/common/ZInterfaceLock.h"

#include <memory>

namespace orvane
{

namespace
{

constexpr int kEndWithoutReport = 3;

// The one question that hosts bear while they load a plug-in.
bool speaksTheInterface(audioMasterCallback audioMaster)
{
    return audioMaster != nullptr &&
           audioMaster(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) != 0;
}

}  // namespace

AEffect* openPlugin(audioMasterCallback audioMaster) noexcept
{
    try {
        if (!speaksTheInterface(audioMaster))
            return nullptr;
        const ZInterfaceLock lock;
        auto plugin = std::make_unique<ZVSTPlugin>(audioMaster);
        plugin->SetWantsMidi(true);
        return plugin.release()->getAeffect();
    } catch (const ZException& exception) {
        if (exception.GetCode() != kEndWithoutReport)
            reportCurrentException();
    } catch (...) {
        reportCurrentException();
    }
    return nullptr;
}

}  // namespace orvane
