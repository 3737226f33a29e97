// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/clap/ClapEntry.h"

#include "kestrune/common/identity/KestruneIdentity.h"
#include "pluginwrappers/clap/ClapCalls.h"
#include "pluginwrappers/clap/ClapExtensionTables.h"
#include "pluginwrappers/clap/ClapPresets.h"
#include "pluginwrappers/clap/ZCLAPPlugin.h"
#include "pluginwrappers/core/PluginStart.h"
#include "zlib/common/objects/ZException.h"

#include <array>
#include <cstring>
#include <new>
#include <string>

namespace orvane
{

namespace
{

const clap_plugin_descriptor& descriptor()
{
    static const std::string version = [] {
        const auto [major, minor, third] = productVersion();
        return std::to_string(major) + '.' + std::to_string(minor) + '.' + std::to_string(third);
    }();
    static const std::array<const char*, 6> features{
        "audio-effect", "pitch-correction", "pitch-shifter", "stereo", "mono", nullptr};
    static const clap_plugin_descriptor plugin{
        kClapVersion,
        kClapId,
        productName(),
        "Orvane Inc.",
        "",
        "",
        "",
        version.c_str(),
        "Pulls a voice to the notes of a scale; shifts pitch and formants apart from each other.",
        features.data()};
    return plugin;
}

bool init(const clap_plugin* record)
{
    try {
        static_cast<ZCLAPPlugin*>(record->plugin_data)->Init();
        return true;
    } catch (...) {
        reportFailedLoad();
        return false;
    }
}

void destroy(const clap_plugin* record)
{
    ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin.destroy");
    plugin.GetHost().Expect(!plugin.IsActive(), "clap_plugin.destroy", "comes before deactivate");
    delete &plugin;
}

bool activate(const clap_plugin* record, double rate, std::uint32_t /*minFrames*/,
              std::uint32_t maxFrames)
{
    ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin.activate");
    if (!plugin.GetHost().Expect(!plugin.IsActive(), "clap_plugin.activate", "comes twice"))
        return false;
    try {
        return plugin.Activate(rate, maxFrames);
    } catch (...) {
        reportCurrentException();
        return false;
    }
}

void deactivate(const clap_plugin* record)
{
    ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin.deactivate");
    if (plugin.GetHost().Expect(plugin.IsActive(), "clap_plugin.deactivate",
                                "comes without activate"))
        plugin.Deactivate();
}

bool startProcessing(const clap_plugin* record)
{
    ZCLAPPlugin& plugin = onAudioThread(record, "clap_plugin.start_processing");
    return plugin.GetHost().Expect(plugin.IsActive(), "clap_plugin.start_processing",
                                   "comes without activate") &&
           plugin.StartProcessing();
}

void stopProcessing(const clap_plugin* record)
{
    ZCLAPPlugin& plugin = onAudioThread(record, "clap_plugin.stop_processing");
    if (plugin.GetHost().Expect(plugin.IsProcessing(), "clap_plugin.stop_processing",
                                "comes without start_processing"))
        plugin.StopProcessing();
}

void reset(const clap_plugin* record)
{
    ZCLAPPlugin& plugin = onAudioThread(record, "clap_plugin.reset");
    if (!plugin.GetHost().Expect(plugin.IsActive(), "clap_plugin.reset", "comes without activate"))
        return;
    try {
        plugin.Reset();
    } catch (...) {
        reportCurrentException();
    }
}

std::int32_t process(const clap_plugin* record, const clap_process* block)
{
    ZCLAPPlugin& plugin = onAudioThread(record, "clap_plugin.process");
    if (!plugin.GetHost().Expect(plugin.IsProcessing(), "clap_plugin.process",
                                 "comes without start_processing"))
        return CLAP_PROCESS_ERROR;
    return plugin.Process(*block);
}

const void* extension(const clap_plugin* /*record*/, const char* name)
{
    return findClapExtension(name);
}

void takeMainThread(const clap_plugin* record)
{
    onMainThread(record, "clap_plugin.on_main_thread").OnMainThread();
}

const clap_plugin* createPlugin(const clap_plugin_factory* /*factory*/, const clap_host* host,
                                const char* id)
{
    if (host == nullptr || id == nullptr || std::strcmp(id, kClapId) != 0 ||
        host->version.major < kClapVersion.major)
        return nullptr;
    static const clap_plugin functions{
        &descriptor(),   nullptr,        init,  destroy, activate,  deactivate,
        startProcessing, stopProcessing, reset, process, extension, takeMainThread};
    auto* const plugin = new (std::nothrow) ZCLAPPlugin(*host, functions);
    return plugin != nullptr ? &plugin->GetRecord() : nullptr;
}

const void* getFactory(const char* id)
{
    static const clap_plugin_factory factory{
        [](const clap_plugin_factory* /*factory*/) { return 1u; },
        [](const clap_plugin_factory* /*factory*/, std::uint32_t index) {
            return index == 0 ? &descriptor() : nullptr;
        },
        createPlugin};
    if (std::strcmp(id, kClapPluginFactory) == 0)
        return &factory;
    const bool isPresets = std::strcmp(id, kClapPresetDiscoveryFactory) == 0 ||
                           std::strcmp(id, kClapPresetDiscoveryFactoryDraft) == 0;
    return isPresets ? &clapPresetFactory() : nullptr;
}

}  // namespace

const clap_plugin_entry& clapEntry()
{
    static const clap_plugin_entry entry{kClapVersion, [](const char* /*path*/) { return true; },
                                         [] {}, getFactory};
    return entry;
}

}  // namespace orvane
