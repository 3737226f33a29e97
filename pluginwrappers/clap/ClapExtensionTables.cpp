// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/clap/ClapExtensionTables.h"

#include "pluginwrappers/clap/ClapCalls.h"
#include "pluginwrappers/clap/ZCLAPPlugin.h"
#include "pluginwrappers/interface/ClapExtensions.h"
#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace orvane
{

namespace
{

/// Returns what the function returns; for an exception, which is logged, the value of a failure.
template <typename Function>
auto guarded(ZCLAPPlugin& plugin, Function&& function) noexcept -> decltype(function())
{
    std::string text = "unknown exception";
    try {
        return function();
    } catch (const ZException& exception) {
        text = exception.GetMessage().ToNarrow();
    } catch (const std::exception& exception) {
        text = exception.what();
    } catch (...) {
    }
    plugin.GetHost().Log(CLAP_LOG_ERROR, text);
    return decltype(function())();
}

// Ports.

bool audioPort(const clap_plugin* record, std::uint32_t index, bool isInput,
               clap_audio_port_info* info)
{
    onMainThread(record, "clap_plugin_audio_ports.get");
    if (index != 0)
        return false;
    // The two ports carry one number each and name each other: they may share memory.
    *info = {};
    info->id = isInput ? 0 : 1;
    info->in_place_pair = isInput ? 1 : 0;
    writeText(info->name, sizeof info->name, isInput ? "Input" : "Output");
    info->flags = CLAP_AUDIO_PORT_IS_MAIN;
    info->channel_count = 2;
    info->port_type = kClapPortStereo;
    return true;
}

const clap_plugin_audio_ports kAudioPorts{[](const clap_plugin* record, bool /*isInput*/) {
                                              onMainThread(record, "clap_plugin_audio_ports.count");
                                              return 1u;
                                          },
                                          audioPort};

const clap_plugin_note_ports kNotePorts{
    [](const clap_plugin* record, bool isInput) {
        onMainThread(record, "clap_plugin_note_ports.count");
        return isInput ? 1u : 0u;
    },
    [](const clap_plugin* record, std::uint32_t index, bool isInput, clap_note_port_info* info) {
        onMainThread(record, "clap_plugin_note_ports.get");
        if (index != 0 || !isInput)
            return false;
        *info = {0, CLAP_NOTE_DIALECT_MIDI, CLAP_NOTE_DIALECT_MIDI, {}};
        writeText(info->name, sizeof info->name, "MIDI Input");
        return true;
    }};

// Parameters.

const clap_plugin_params kParams{
    [](const clap_plugin* record) {
        return onMainThread(record, "clap_plugin_params.count").GetParameterCount();
    },
    [](const clap_plugin* record, std::uint32_t index, clap_param_info* info) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_params.get_info");
        return guarded(plugin, [&] { return plugin.GetInfo(index, *info); });
    },
    [](const clap_plugin* record, clap_id parameter, double* value) {
        const auto found = onMainThread(record, "clap_plugin_params.get_value").GetValue(parameter);
        *value = found.value_or(*value);
        return found.has_value();
    },
    [](const clap_plugin* record, clap_id parameter, double value, char* text,
       std::uint32_t capacity) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_params.value_to_text");
        const auto found = guarded(plugin, [&] { return plugin.GetText(parameter, value); });
        if (found)
            writeText(text, capacity, *found);
        return found.has_value() && capacity > 0;
    },
    [](const clap_plugin* record, clap_id parameter, const char* text, double* value) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_params.text_to_value");
        const auto found = guarded(plugin, [&] { return plugin.GetValueOfText(parameter, text); });
        *value = found.value_or(*value);
        return found.has_value();
    },
    [](const clap_plugin* record, const clap_input_events* in, const clap_output_events* out) {
        const bool isActive = static_cast<ZCLAPPlugin*>(record->plugin_data)->IsActive();
        ZCLAPPlugin& plugin = isActive
                                  ? onAudioThread(record, "clap_plugin_params.flush while active")
                                  : onMainThread(record, "clap_plugin_params.flush");
        plugin.Flush(in, out);
    }};

// State.

bool saveState(const clap_plugin* record, const clap_ostream* stream)
{
    ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_state.save");
    return guarded(plugin, [&] {
        const std::string text = plugin.Save();
        std::string_view rest = text;
        while (!rest.empty()) {
            const std::int64_t count = stream->write(stream, rest.data(), rest.size());
            if (count <= 0 || static_cast<std::uint64_t>(count) > rest.size())
                return false;
            rest.remove_prefix(static_cast<std::size_t>(count));
        }
        return !text.empty();
    });
}

bool loadState(const clap_plugin* record, const clap_istream* stream)
{
    ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_state.load");
    return guarded(plugin, [&] {
        std::string text;
        std::array<char, 16384> part{};
        std::int64_t count = 0;
        // What is longer than any state is refused by Load.
        while (text.size() <= ZCLAPPlugin::kLongestState &&
               (count = stream->read(stream, part.data(), part.size())) > 0)
            text.append(part.data(),
                        std::min<std::size_t>(static_cast<std::size_t>(count), part.size()));
        if (count < 0)
            return false;
        plugin.Load(text);
        return true;
    });
}

const clap_plugin_state kState{saveState, loadState};

// Time.

const clap_plugin_latency kLatency{[](const clap_plugin* record) {
    return onMainThread(record, "clap_plugin_latency.get").GetLatency();
}};

const clap_plugin_tail kTail{[](const clap_plugin* record) {
    return static_cast<ZCLAPPlugin*>(record->plugin_data)->GetTail();
}};

const clap_plugin_render kRender{
    [](const clap_plugin* record) {
        onMainThread(record, "clap_plugin_render.has_hard_realtime_requirement");
        return false;
    },
    [](const clap_plugin* record, std::int32_t mode) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_render.set");
        if (mode != CLAP_RENDER_REALTIME && mode != CLAP_RENDER_OFFLINE)
            return false;
        plugin.SetOffline(mode == CLAP_RENDER_OFFLINE);
        return true;
    }};

// The window.

bool isOurWindow(const ZCLAPPlugin& plugin, const char* api, bool isFloating)
{
    return plugin.HasWindow() && !isFloating && api != nullptr &&
           std::strcmp(api, kClapWindowX11) == 0;
}

bool windowSize(const clap_plugin* record, std::uint32_t* width, std::uint32_t* height)
{
    const ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_gui.get_size");
    const auto [ownWidth, ownHeight] = plugin.GetWindowSize();
    *width = ownWidth;
    *height = ownHeight;
    return plugin.HasWindow();
}

const clap_plugin_gui kGui{
    [](const clap_plugin* record, const char* api, bool isFloating) {
        return isOurWindow(onMainThread(record, "clap_plugin_gui.is_api_supported"), api,
                           isFloating);
    },
    [](const clap_plugin* record, const char** api, bool* isFloating) {
        *api = kClapWindowX11;
        *isFloating = false;
        return onMainThread(record, "clap_plugin_gui.get_preferred_api").HasWindow();
    },
    [](const clap_plugin* record, const char* api, bool isFloating) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_gui.create");
        return isOurWindow(plugin, api, isFloating) && plugin.CreateWindow();
    },
    [](const clap_plugin* record) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_gui.destroy");
        guarded(plugin, [&] { plugin.DestroyWindow(); });
    },
    [](const clap_plugin* record, double scale) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_gui.set_scale");
        return guarded(plugin, [&] { return plugin.SetScale(scale); });
    },
    windowSize,
    [](const clap_plugin* record) {
        onMainThread(record, "clap_plugin_gui.can_resize");
        return false;
    },
    [](const clap_plugin* record, clap_gui_resize_hints* /*hints*/) {
        onMainThread(record, "clap_plugin_gui.get_resize_hints");
        return false;
    },
    // The window has one size; the nearest to any other is its own.
    windowSize,
    [](const clap_plugin* record, std::uint32_t width, std::uint32_t height) {
        const ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_gui.set_size");
        return plugin.GetWindowSize() == std::array{width, height};
    },
    [](const clap_plugin* record, const clap_window* window) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_gui.set_parent");
        return isOurWindow(plugin, window->api, false) &&
               guarded(plugin, [&] { return plugin.SetParent(window->x11); });
    },
    [](const clap_plugin* record, const clap_window* /*window*/) {
        onMainThread(record, "clap_plugin_gui.set_transient");
        return false;
    },
    [](const clap_plugin* record, const char* /*title*/) {
        onMainThread(record, "clap_plugin_gui.suggest_title");
    },
    [](const clap_plugin* record) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_gui.show");
        return guarded(plugin, [&] { return plugin.ShowWindow(); });
    },
    [](const clap_plugin* record) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_gui.hide");
        return guarded(plugin, [&] { return plugin.HideWindow(); });
    }};

// Controllers and presets.

const clap_plugin_remote_controls kRemoteControls{
    [](const clap_plugin* record) {
        onMainThread(record, "clap_plugin_remote_controls.count");
        return 1u;
    },
    [](const clap_plugin* record, std::uint32_t index, clap_remote_controls_page* page) {
        const ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_remote_controls.get");
        if (index != 0)
            return false;
        *page = {};
        writeText(page->section_name, sizeof page->section_name, "Main");
        writeText(page->page_name, sizeof page->page_name, "Pitch");
        for (std::uint32_t i = 0; i < kClapRemoteControlsCount; ++i)
            page->param_ids[i] = i < plugin.GetParameterCount() ? i : kClapInvalidId;
        return true;
    }};

const clap_plugin_preset_load kPresetLoad{
    [](const clap_plugin* record, std::uint32_t kind, const char* location, const char* key) {
        ZCLAPPlugin& plugin = onMainThread(record, "clap_plugin_preset_load.from_location");
        const bool isLoaded = kind == CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN && key != nullptr &&
                              guarded(plugin, [&] { return plugin.LoadPreset(key); });
        if (isLoaded)
            plugin.GetHost().PresetLoaded(kind, location, key);
        else
            plugin.GetHost().PresetFailed(kind, location, key,
                                          "there is no factory preset of this key in the plug-in");
        return isLoaded;
    }};

}  // namespace

const void* findClapExtension(const char* name) noexcept
{
    const std::array<std::pair<const char*, const void*>, 12> extensions{
        {{kClapAudioPorts, &kAudioPorts},
         {kClapNotePorts, &kNotePorts},
         {kClapParams, &kParams},
         {kClapState, &kState},
         {kClapLatency, &kLatency},
         {kClapTail, &kTail},
         {kClapRender, &kRender},
         {kClapGui, &kGui},
         {kClapRemoteControls, &kRemoteControls},
         {kClapRemoteControlsDraft, &kRemoteControls},
         {kClapPresetLoad, &kPresetLoad},
         {kClapPresetLoadDraft, &kPresetLoad}}};
    const auto* const found = std::ranges::find_if(
        extensions, [name](const auto& entry) { return std::strcmp(entry.first, name) == 0; });
    return found != extensions.end() ? found->second : nullptr;
}

}  // namespace orvane
