// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/ClapPlugin.h"

#include <cstdint>

namespace orvane
{

// How a CLAP host finds presets without making a plug-in, written by hand from the published
// standard, version 1.2. All calls: [main-thread] of an indexer, which may be another process.

constexpr const char* kClapPresetDiscoveryFactory = "clap.preset-discovery-factory/2";
constexpr const char* kClapPresetDiscoveryFactoryDraft = "clap.preset-discovery-factory/draft-2";
constexpr std::uint32_t CLAP_PRESET_DISCOVERY_IS_FACTORY_CONTENT = 1u << 0;

/// A plug-in of any interface.
struct clap_universal_plugin_id
{
    const char* abi;  // "clap"
    const char* id;
};

/// Takes what a provider tells of one location: a preset begins, its properties follow.
struct clap_preset_discovery_metadata_receiver
{
    void* receiver_data;
    void (*on_error)(const clap_preset_discovery_metadata_receiver* receiver, std::int32_t os_error,
                     const char* message);
    /// Returns false when the provider has to stop.
    bool (*begin_preset)(const clap_preset_discovery_metadata_receiver* receiver, const char* name,
                         const char* load_key);
    void (*add_plugin_id)(const clap_preset_discovery_metadata_receiver* receiver,
                          const clap_universal_plugin_id* plugin_id);
    void (*set_soundpack_id)(const clap_preset_discovery_metadata_receiver* receiver,
                             const char* soundpack_id);
    void (*set_flags)(const clap_preset_discovery_metadata_receiver* receiver, std::uint32_t flags);
    void (*add_creator)(const clap_preset_discovery_metadata_receiver* receiver,
                        const char* creator);
    void (*set_description)(const clap_preset_discovery_metadata_receiver* receiver,
                            const char* description);
    void (*set_timestamps)(const clap_preset_discovery_metadata_receiver* receiver,
                           std::uint64_t creation, std::uint64_t modification);
    void (*add_feature)(const clap_preset_discovery_metadata_receiver* receiver,
                        const char* feature);
    void (*add_extra_info)(const clap_preset_discovery_metadata_receiver* receiver, const char* key,
                           const char* value);
};

/// A place that a provider finds presets in.
struct clap_preset_discovery_location
{
    std::uint32_t flags;
    const char* name;
    std::uint32_t kind;    // ClapPresetLocation
    const char* location;  // null for a plug-in
};

/// What an indexer may know of a provider before it makes one.
struct clap_preset_discovery_provider_descriptor
{
    clap_version version;
    const char* id;
    const char* name;
    const char* vendor;
};

/// The library's side: declares locations, then tells of the presets in each.
struct clap_preset_discovery_provider
{
    const clap_preset_discovery_provider_descriptor* desc;
    void* provider_data;
    /// Declares the locations to the indexer.
    bool (*init)(const clap_preset_discovery_provider* provider);
    void (*destroy)(const clap_preset_discovery_provider* provider);
    bool (*get_metadata)(const clap_preset_discovery_provider* provider,
                         std::uint32_t location_kind, const char* location,
                         const clap_preset_discovery_metadata_receiver* receiver);
    const void* (*get_extension)(const clap_preset_discovery_provider* provider, const char* id);
};

/// The host's side.
struct clap_preset_discovery_indexer
{
    clap_version version;
    const char* name;
    const char* vendor;
    const char* url;
    const char* indexer_version;
    void* indexer_data;
    bool (*declare_filetype)(const clap_preset_discovery_indexer* indexer, const void* filetype);
    bool (*declare_location)(const clap_preset_discovery_indexer* indexer,
                             const clap_preset_discovery_location* location);
    bool (*declare_soundpack)(const clap_preset_discovery_indexer* indexer, const void* soundpack);
    const void* (*get_extension)(const clap_preset_discovery_indexer* indexer, const char* id);
};

/// Makes the providers of a library.
struct clap_preset_discovery_factory
{
    std::uint32_t (*count)(const clap_preset_discovery_factory* factory);
    const clap_preset_discovery_provider_descriptor* (*get_descriptor)(
        const clap_preset_discovery_factory* factory, std::uint32_t index);
    const clap_preset_discovery_provider* (*create)(const clap_preset_discovery_factory* factory,
                                                    const clap_preset_discovery_indexer* indexer,
                                                    const char* provider_id);
};

}  // namespace orvane
