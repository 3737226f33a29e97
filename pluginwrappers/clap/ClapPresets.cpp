// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/clap/ClapPresets.h"

#include "kestrune/common/identity/KestruneIdentity.h"
#include "pluginwrappers/clap/ClapEntry.h"
#include "pluginwrappers/clap/ZCLAPPlugin.h"
#include "pluginwrappers/core/PluginStart.h"
#include "pluginwrappers/core/ZPluginCore.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

using Provider = clap_preset_discovery_provider;
using Receiver = clap_preset_discovery_metadata_receiver;

class SilentShell : public ZPluginShell
{
    bool HostIsOffline() override { return true; }
};

/// Returns the names of the factory presets. Throws ZException when the plug-in cannot be built.
std::vector<std::string> presetNames()
{
    SilentShell shell;
    std::unique_ptr<ZPluginCore> core;
    const ZInterfaceLock lock;
    core = std::make_unique<ZPluginCore>(shell, startApplication());
    std::vector<std::string> names;
    for (std::int32_t i = 0; core->GetPrograms().GetName(i); ++i)
        names.push_back(core->GetPrograms().GetName(i)->ToNarrow());
    core->Release();
    const ZInterfaceUnlock unlocked;
    core.reset();
    return names;
}

const clap_preset_discovery_provider_descriptor& providerDescriptor()
{
    static const clap_preset_discovery_provider_descriptor provider{
        kClapVersion, "orvane.cantorel-mini.presets", productName(), "Orvane Inc."};
    return provider;
}

bool declare(const Provider* provider)
{
    const auto* const indexer =
        static_cast<const clap_preset_discovery_indexer*>(provider->provider_data);
    const clap_preset_discovery_location location{CLAP_PRESET_DISCOVERY_IS_FACTORY_CONTENT,
                                                  productName(),
                                                  CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN, nullptr};
    return indexer->declare_location(indexer, &location);
}

bool tellPresets(const Receiver& receiver)
{
    const clap_universal_plugin_id id{"clap", kClapId};
    std::int32_t index = 0;
    for (const std::string& name : presetNames()) {
        if (!receiver.begin_preset(&receiver, name.c_str(), ZCLAPPlugin::KeyOf(index++).c_str()))
            return true;
        receiver.add_plugin_id(&receiver, &id);
        receiver.set_flags(&receiver, CLAP_PRESET_DISCOVERY_IS_FACTORY_CONTENT);
        receiver.add_creator(&receiver, "Orvane Inc.");
    }
    return true;
}

bool getMetadata(const Provider* /*provider*/, std::uint32_t kind, const char* /*location*/,
                 const Receiver* receiver)
{
    if (kind != CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN) {
        receiver->on_error(receiver, 0, "the presets are in the plug-in, not in files");
        return false;
    }
    try {
        return tellPresets(*receiver);
    } catch (const ZException& exception) {
        receiver->on_error(receiver, 0, exception.GetMessage().ToNarrow().c_str());
    } catch (const std::exception& exception) {
        receiver->on_error(receiver, 0, exception.what());
    }
    return false;
}

const Provider* createProvider(const clap_preset_discovery_factory* /*factory*/,
                               const clap_preset_discovery_indexer* indexer, const char* id)
{
    if (indexer == nullptr || id == nullptr || std::strcmp(id, providerDescriptor().id) != 0)
        return nullptr;
    return new (std::nothrow) Provider{
        &providerDescriptor(),
        const_cast<clap_preset_discovery_indexer*>(indexer),
        declare,
        [](const Provider* provider) { delete provider; },
        getMetadata,
        [](const Provider* /*provider*/, const char* /*name*/) -> const void* { return nullptr; }};
}

}  // namespace

const clap_preset_discovery_factory& clapPresetFactory()
{
    static const clap_preset_discovery_factory factory{
        [](const clap_preset_discovery_factory* /*factory*/) { return 1u; },
        [](const clap_preset_discovery_factory* /*factory*/, std::uint32_t index) {
            return index == 0 ? &providerDescriptor() : nullptr;
        },
        createProvider};
    return factory;
}

}  // namespace orvane
