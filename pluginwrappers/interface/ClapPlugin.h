// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

// The binary interface of CLAP 1.2, written by hand from the published standard: what a host and a
// plug-in exchange at the least. Names and fields are the standard's. Texts are UTF-8 and
// terminated. ClapExtensions.h holds what either side may offer besides.

/// Identifies a parameter, port or page; kClapInvalidId is none.
using clap_id = std::uint32_t;
constexpr clap_id kClapInvalidId = UINT32_MAX;

constexpr std::uint32_t kClapNameSize = 256;   // bytes, with the terminator
constexpr std::uint32_t kClapPathSize = 1024;  // bytes, with the terminator

/// Versions of one major number fit each other; 0 was for drafts.
struct clap_version
{
    std::uint32_t major;
    std::uint32_t minor;
    std::uint32_t revision;
};
constexpr clap_version kClapVersion{1, 2, 0};

/// The host as the plug-in sees it.
struct clap_host
{
    clap_version version;
    void* host_data;
    const char* name;
    const char* vendor;  // may be null
    const char* url;     // may be null
    const char* host_version;

    /// Returns an extension of the host, null when it has none of that name. [thread-safe]
    const void* (*get_extension)(const clap_host* host, const char* extension_id);
    /// Ask the host to deactivate and activate the plug-in, to process it, to call on_main_thread.
    /// [thread-safe]
    void (*request_restart)(const clap_host* host);
    void (*request_process)(const clap_host* host);
    void (*request_callback)(const clap_host* host);
};

/// What every event begins with.
struct clap_event_header
{
    std::uint32_t size;  // bytes, with the header
    std::uint32_t time;  // samples from the block's begin
    std::uint16_t space_id;
    std::uint16_t type;
    std::uint32_t flags;
};
constexpr std::uint16_t kClapCoreEventSpace = 0;

/// Types of events in the core space.
enum ClapEventType : std::uint16_t
{
    CLAP_EVENT_NOTE_ON = 0,
    CLAP_EVENT_NOTE_OFF = 1,
    CLAP_EVENT_PARAM_VALUE = 5,
    CLAP_EVENT_PARAM_MOD = 6,
    CLAP_EVENT_PARAM_GESTURE_BEGIN = 7,
    CLAP_EVENT_PARAM_GESTURE_END = 8,
    CLAP_EVENT_MIDI = 10,
};

/// A plain value of a parameter; the fields of notes are -1 for all notes.
struct clap_event_param_value
{
    clap_event_header header;
    clap_id param_id;
    void* cookie;
    std::int32_t note_id;
    std::int16_t port_index;
    std::int16_t channel;
    std::int16_t key;
    double value;
};

/// The user begins or ends an edit.
struct clap_event_param_gesture
{
    clap_event_header header;
    clap_id param_id;
};

/// A MIDI 1.0 message of up to three bytes.
struct clap_event_midi
{
    clap_event_header header;
    std::uint16_t port_index;
    std::uint8_t data[3];
};

/// Events of a block, in the order of their times.
struct clap_input_events
{
    void* ctx;
    std::uint32_t (*size)(const clap_input_events* list);
    const clap_event_header* (*get)(const clap_input_events* list, std::uint32_t index);
};
/// Takes the events that the plug-in sends in a block, in the order of their times.
struct clap_output_events
{
    void* ctx;
    /// Copies the event; false when there is no room.
    bool (*try_push)(const clap_output_events* list, const clap_event_header* event);
};

/// The channels of a port.
struct clap_audio_buffer
{
    float** data32;
    double** data64;  // null while the host processes 32 bits
    std::uint32_t channel_count;
    std::uint32_t latency;
    std::uint64_t constant_mask;  // a bit for each channel that holds one value all through
};

/// A block.
struct clap_process
{
    std::int64_t steady_time;  // samples, -1 when unknown
    std::uint32_t frames_count;
    const void* transport;  // null while the host runs free
    const clap_audio_buffer* audio_inputs;
    clap_audio_buffer* audio_outputs;
    std::uint32_t audio_inputs_count;
    std::uint32_t audio_outputs_count;
    const clap_input_events* in_events;
    const clap_output_events* out_events;
};

/// What the plug-in wants after a block.
enum ClapProcessStatus : std::int32_t
{
    CLAP_PROCESS_ERROR = 0,
    CLAP_PROCESS_CONTINUE = 1,
    CLAP_PROCESS_CONTINUE_IF_NOT_QUIET = 2,
    CLAP_PROCESS_TAIL = 3,
    CLAP_PROCESS_SLEEP = 4,
};

/// What a host may know of a plug-in before it makes one.
struct clap_plugin_descriptor
{
    clap_version version;
    const char* id;
    const char* name;
    const char* vendor;
    const char* url;
    const char* manual_url;
    const char* support_url;
    const char* plugin_version;
    const char* description;
    const char* const* features;  // ended by null
};

/// The plug-in as the host sees it.
struct clap_plugin
{
    const clap_plugin_descriptor* desc;
    void* plugin_data;

    /// Called once, before all else; after false only destroy follows. [main-thread]
    bool (*init)(const clap_plugin* plugin);
    /// Frees the plug-in, which is not active. [main-thread & !active]
    void (*destroy)(const clap_plugin* plugin);
    /// Fixes rate and lengths of blocks until deactivate. [main-thread & !active]
    bool (*activate)(const clap_plugin* plugin, double sample_rate, std::uint32_t min_frames_count,
                     std::uint32_t max_frames_count);
    void (*deactivate)(const clap_plugin* plugin);        // [main-thread & active]
    bool (*start_processing)(const clap_plugin* plugin);  // [audio-thread & active & !processing]
    void (*stop_processing)(const clap_plugin* plugin);   // [audio-thread & active & processing]
    void (*reset)(const clap_plugin* plugin);             // [audio-thread & active]
    /// Processes a block; returns a ClapProcessStatus. [audio-thread & active & processing]
    std::int32_t (*process)(const clap_plugin* plugin, const clap_process* process);
    /// Returns an extension of the plug-in, null when it has none of that name. [thread-safe]
    const void* (*get_extension)(const clap_plugin* plugin, const char* id);
    void (*on_main_thread)(const clap_plugin* plugin);  // [main-thread]
};

/// Makes the plug-ins of a library. [thread-safe]
struct clap_plugin_factory
{
    std::uint32_t (*get_plugin_count)(const clap_plugin_factory* factory);
    const clap_plugin_descriptor* (*get_plugin_descriptor)(const clap_plugin_factory* factory,
                                                           std::uint32_t index);
    /// [main-thread]
    const clap_plugin* (*create_plugin)(const clap_plugin_factory* factory, const clap_host* host,
                                        const char* plugin_id);
};
constexpr const char* kClapPluginFactory = "clap.plugin-factory";

/// What a library exports under the name clap_entry. init may be called several times, and as often
/// deinit.
struct clap_plugin_entry
{
    clap_version version;
    bool (*init)(const char* plugin_path);
    void (*deinit)();
    const void* (*get_factory)(const char* factory_id);
};

}  // namespace orvane
