// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/ClapPlugin.h"

#include <cstdint>

namespace orvane
{

// The extensions of CLAP 1.2 that the plug-in offers or uses, written by hand from the published
// standard. What a host or plug-in returns for the name of an extension is one of these records.

// Audio ports.
constexpr const char* kClapAudioPorts = "clap.audio-ports";
constexpr const char* kClapPortStereo = "stereo";
constexpr std::uint32_t CLAP_AUDIO_PORT_IS_MAIN = 1u << 0;
/// An audio port, as the plug-in describes it.
struct clap_audio_port_info
{
    clap_id id;
    char name[kClapNameSize];
    std::uint32_t flags;
    std::uint32_t channel_count;
    const char* port_type;
    clap_id in_place_pair;  // the port of the other direction that may use the same memory
};
/// The plug-in's audio ports of either direction.
struct clap_plugin_audio_ports
{
    std::uint32_t (*count)(const clap_plugin* plugin, bool is_input);  // [main-thread]
    bool (*get)(const clap_plugin* plugin, std::uint32_t index, bool is_input,
                clap_audio_port_info* info);  // [main-thread]
};

// Note ports.
constexpr const char* kClapNotePorts = "clap.note-ports";
constexpr std::uint32_t CLAP_NOTE_DIALECT_MIDI = 1u << 1;
/// A port of notes, as the plug-in describes it.
struct clap_note_port_info
{
    clap_id id;
    std::uint32_t supported_dialects;
    std::uint32_t preferred_dialect;
    char name[kClapNameSize];
};
/// The plug-in's note ports of either direction.
struct clap_plugin_note_ports
{
    std::uint32_t (*count)(const clap_plugin* plugin, bool is_input);  // [main-thread]
    bool (*get)(const clap_plugin* plugin, std::uint32_t index, bool is_input,
                clap_note_port_info* info);  // [main-thread]
};

// Parameters.
constexpr const char* kClapParams = "clap.params";
constexpr std::uint32_t CLAP_PARAM_IS_STEPPED = 1u << 0;
constexpr std::uint32_t CLAP_PARAM_IS_AUTOMATABLE = 1u << 5;
constexpr std::uint32_t CLAP_PARAM_IS_ENUM = 1u << 16;
constexpr std::uint32_t CLAP_PARAM_RESCAN_VALUES = 1u << 0;
/// A parameter, as the plug-in describes it. Values are plain: in the unit of the parameter.
struct clap_param_info
{
    clap_id id;
    std::uint32_t flags;
    void* cookie;  // given back with each value
    char name[kClapNameSize];
    char module[kClapPathSize];
    double min_value;
    double max_value;
    double default_value;
};
/// The plug-in's parameters.
struct clap_plugin_params
{
    std::uint32_t (*count)(const clap_plugin* plugin);  // [main-thread]
    bool (*get_info)(const clap_plugin* plugin, std::uint32_t index,
                     clap_param_info* info);  // [main-thread]
    bool (*get_value)(const clap_plugin* plugin, clap_id param_id,
                      double* value);  // [main-thread]
    bool (*value_to_text)(const clap_plugin* plugin, clap_id param_id, double value, char* text,
                          std::uint32_t capacity);  // [main-thread]
    bool (*text_to_value)(const clap_plugin* plugin, clap_id param_id, const char* text,
                          double* value);  // [main-thread]
    /// Exchanges values while no block does it. [active ? audio-thread : main-thread]
    void (*flush)(const clap_plugin* plugin, const clap_input_events* in,
                  const clap_output_events* out);
};
/// What the plug-in tells the host of its parameters.
struct clap_host_params
{
    void (*rescan)(const clap_host* host, std::uint32_t flags);                   // [main-thread]
    void (*clear)(const clap_host* host, clap_id param_id, std::uint32_t flags);  // [main-thread]
    void (*request_flush)(const clap_host* host);  // [thread-safe, !audio-thread]
};

// State.
constexpr const char* kClapState = "clap.state";
/// What a state is read from.
struct clap_istream
{
    void* ctx;
    /// Returns how many bytes were read; 0 at the end, -1 for a failure.
    std::int64_t (*read)(const clap_istream* stream, void* buffer, std::uint64_t size);
};
/// What a state is written to.
struct clap_ostream
{
    void* ctx;
    /// Returns how many bytes were written, which may be fewer; -1 for a failure.
    std::int64_t (*write)(const clap_ostream* stream, const void* buffer, std::uint64_t size);
};
/// Saves and loads the plug-in's state; false for a failure.
struct clap_plugin_state
{
    bool (*save)(const clap_plugin* plugin, const clap_ostream* stream);  // [main-thread]
    bool (*load)(const clap_plugin* plugin, const clap_istream* stream);  // [main-thread]
};
/// Hears that the state differs from the saved one.
struct clap_host_state
{
    void (*mark_dirty)(const clap_host* host);  // [main-thread]
};

// Latency, which may change in activate alone.
constexpr const char* kClapLatency = "clap.latency";
/// Tells the latency in samples.
struct clap_plugin_latency
{
    std::uint32_t (*get)(const clap_plugin* plugin);  // [main-thread]
};
/// Hears that the latency is another one.
struct clap_host_latency
{
    void (*changed)(const clap_host* host);  // [main-thread]
};

// Tail: samples of sound after the end of the input.
constexpr const char* kClapTail = "clap.tail";
constexpr std::uint32_t kClapInfiniteTail = INT32_MAX;
/// Tells the length of the tail.
struct clap_plugin_tail
{
    std::uint32_t (*get)(const clap_plugin* plugin);  // [main-thread, audio-thread]
};
/// Hears that the tail is another one.
struct clap_host_tail
{
    void (*changed)(const clap_host* host);  // [audio-thread]
};

// Rendering.
constexpr const char* kClapRender = "clap.render";
constexpr std::int32_t CLAP_RENDER_REALTIME = 0;
constexpr std::int32_t CLAP_RENDER_OFFLINE = 1;
/// Hears whether the host plays or renders faster than it plays.
struct clap_plugin_render
{
    bool (*has_hard_realtime_requirement)(const clap_plugin* plugin);  // [main-thread]
    bool (*set)(const clap_plugin* plugin, std::int32_t mode);         // [main-thread]
};

// The window.
constexpr const char* kClapGui = "clap.gui";
constexpr const char* kClapWindowX11 = "x11";
/// A window of the host that the plug-in puts its own into, by the name of the window system.
struct clap_window
{
    const char* api;
    union {
        unsigned long x11;
        void* ptr;
    };
};
/// How the user may resize the window.
struct clap_gui_resize_hints
{
    bool can_resize_horizontally;
    bool can_resize_vertically;
    bool preserve_aspect_ratio;
    std::uint32_t aspect_ratio_width;
    std::uint32_t aspect_ratio_height;
};
/// Sizes are in pixels. All of it: [main-thread]
struct clap_plugin_gui
{
    bool (*is_api_supported)(const clap_plugin* plugin, const char* api, bool is_floating);
    bool (*get_preferred_api)(const clap_plugin* plugin, const char** api, bool* is_floating);
    bool (*create)(const clap_plugin* plugin, const char* api, bool is_floating);
    void (*destroy)(const clap_plugin* plugin);
    bool (*set_scale)(const clap_plugin* plugin, double scale);
    bool (*get_size)(const clap_plugin* plugin, std::uint32_t* width, std::uint32_t* height);
    bool (*can_resize)(const clap_plugin* plugin);
    bool (*get_resize_hints)(const clap_plugin* plugin, clap_gui_resize_hints* hints);
    bool (*adjust_size)(const clap_plugin* plugin, std::uint32_t* width, std::uint32_t* height);
    bool (*set_size)(const clap_plugin* plugin, std::uint32_t width, std::uint32_t height);
    bool (*set_parent)(const clap_plugin* plugin, const clap_window* window);
    bool (*set_transient)(const clap_plugin* plugin, const clap_window* window);
    void (*suggest_title)(const clap_plugin* plugin, const char* title);
    bool (*show)(const clap_plugin* plugin);
    bool (*hide)(const clap_plugin* plugin);
};
/// What the plug-in asks of the host for its window; false when the host refuses.
struct clap_host_gui
{
    void (*resize_hints_changed)(const clap_host* host);  // [any]
    bool (*request_resize)(const clap_host* host, std::uint32_t width,
                           std::uint32_t height);               // [any]
    bool (*request_show)(const clap_host* host);                // [any]
    bool (*request_hide)(const clap_host* host);                // [any]
    void (*closed)(const clap_host* host, bool was_destroyed);  // [any]
};

// The host's log and its answer to which thread this is. Both [thread-safe].
constexpr const char* kClapLog = "clap.log";
constexpr std::int32_t CLAP_LOG_ERROR = 3;
constexpr std::int32_t CLAP_LOG_HOST_MISBEHAVING = 5;
/// The host's log.
struct clap_host_log
{
    void (*log)(const clap_host* host, std::int32_t severity, const char* message);
};
constexpr const char* kClapThreadCheck = "clap.thread-check";
/// Whether the calling thread is the one that the standard means.
struct clap_host_thread_check
{
    bool (*is_main_thread)(const clap_host* host);
    bool (*is_audio_thread)(const clap_host* host);
};

// A page of parameters for the knobs of a controller.
constexpr const char* kClapRemoteControls = "clap.remote-controls/2";
constexpr const char* kClapRemoteControlsDraft = "clap.remote-controls.draft/2";
constexpr std::uint32_t kClapRemoteControlsCount = 8;
/// A page, as the plug-in describes it; kClapInvalidId leaves a knob free.
struct clap_remote_controls_page
{
    char section_name[kClapNameSize];
    clap_id page_id;
    char page_name[kClapNameSize];
    clap_id param_ids[kClapRemoteControlsCount];
    bool is_for_preset;
};
/// The plug-in's pages.
struct clap_plugin_remote_controls
{
    std::uint32_t (*count)(const clap_plugin* plugin);  // [main-thread]
    bool (*get)(const clap_plugin* plugin, std::uint32_t page_index,
                clap_remote_controls_page* page);  // [main-thread]
};

// Loading of presets by the host.
constexpr const char* kClapPresetLoad = "clap.preset-load/2";
constexpr const char* kClapPresetLoadDraft = "clap.preset-load.draft/2";
enum ClapPresetLocation : std::uint32_t
{
    CLAP_PRESET_DISCOVERY_LOCATION_FILE = 0,
    CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN = 1,
};
/// Loads a preset; false for a failure, which the host hears of by on_error.
struct clap_plugin_preset_load
{
    bool (*from_location)(const clap_plugin* plugin, std::uint32_t location_kind,
                          const char* location, const char* load_key);  // [main-thread]
};
/// Hears how the loading of a preset ended.
struct clap_host_preset_load
{
    void (*on_error)(const clap_host* host, std::uint32_t location_kind, const char* location,
                     const char* load_key, std::int32_t os_error,
                     const char* message);  // [main-thread]
    void (*loaded)(const clap_host* host, std::uint32_t location_kind, const char* location,
                   const char* load_key);  // [main-thread]
};

}  // namespace orvane
