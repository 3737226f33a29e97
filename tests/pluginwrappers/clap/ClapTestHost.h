// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/ClapExtensions.h"
#include "pluginwrappers/interface/ClapPresetDiscovery.h"
#include "support/Test.h"

#include <dlfcn.h>

#include <variant>

namespace orvane
{

/// The built library, loaded as hosts do.
struct ClapLibrary
{
    ClapLibrary()
    {
        if (mHandle == nullptr)
            throw std::runtime_error(::dlerror());
        entry = static_cast<const clap_plugin_entry*>(::dlsym(mHandle, "clap_entry"));
        if (entry == nullptr || !entry->init(KESTRUNE_CLAP_LIBRARY))
            throw std::runtime_error("the library does not start");
    }
    ClapLibrary(ClapLibrary&&) = delete;
    ~ClapLibrary()
    {
        entry->deinit();
        ::dlclose(mHandle);
    }

    template <typename Factory>
    [[nodiscard]] const Factory& Get(const char* id) const
    {
        return *static_cast<const Factory*>(entry->get_factory(id));
    }

private:
    void* const mHandle = ::dlopen(KESTRUNE_CLAP_LIBRARY, RTLD_NOW | RTLD_LOCAL);

public:
    const clap_plugin_entry* entry;
};

/// A host with all extensions; records what it is told.
struct ClapTestHost
{
    ClapTestHost() = default;
    ClapTestHost(ClapTestHost&&) = delete;

    [[nodiscard]] std::vector<std::string> TakeLines()
    {
        const std::lock_guard lock(mMutex);
        return std::exchange(mLines, {});
    }

    std::atomic<int> rescans{0};
    std::atomic<int> dirty{0};
    std::atomic<int> latencyChanges{0};
    std::atomic<int> tailChanges{0};
    std::atomic<int> flushRequests{0};
    std::atomic<int> callbackRequests{0};
    std::atomic<std::uint64_t> requestedSize{0};  // width * 65536 + height
    std::atomic<bool> grantsSize{true};
    std::vector<std::string> presets;  // "loaded 3", "failed 9"
    // Whether this thread plays the audio thread at the moment; otherwise it is the main thread.
    inline static thread_local bool isAudio = false;

    const clap_host host{kClapVersion,
                         this,
                         "test",
                         "",
                         "",
                         "1",
                         getExtension,
                         [](const clap_host*) {},
                         [](const clap_host*) {},
                         [](const clap_host* self) { ++From(self).callbackRequests; }};

private:
    static ClapTestHost& From(const clap_host* host)
    {
        return *static_cast<ClapTestHost*>(host->host_data);
    }
    static const void* getExtension(const clap_host*, const char* name)
    {
        static const clap_host_log log{[](const clap_host* self, std::int32_t, const char* text) {
            const std::lock_guard lock(From(self).mMutex);
            From(self).mLines.emplace_back(text);
        }};
        static const clap_host_thread_check threads{[](const clap_host*) { return !isAudio; },
                                                    [](const clap_host*) { return isAudio; }};
        static const clap_host_params params{
            [](const clap_host* self, std::uint32_t flags) {
                EXPECT_EQ(flags, CLAP_PARAM_RESCAN_VALUES);
                ++From(self).rescans;
            },
            [](const clap_host*, clap_id, std::uint32_t) {},
            [](const clap_host* self) { ++From(self).flushRequests; }};
        static const clap_host_state state{[](const clap_host* self) { ++From(self).dirty; }};
        static const clap_host_latency latency{
            [](const clap_host* self) { ++From(self).latencyChanges; }};
        static const clap_host_tail tail{[](const clap_host* self) { ++From(self).tailChanges; }};
        static const clap_host_gui gui{
            [](const clap_host*) {},
            [](const clap_host* self, std::uint32_t width, std::uint32_t height) {
                From(self).requestedSize = width * 65536ull + height;
                return From(self).grantsSize.load();
            },
            [](const clap_host*) { return true; }, [](const clap_host*) { return true; },
            [](const clap_host*, bool) {}};
        static const clap_host_preset_load presetLoad{
            [](const clap_host* self, std::uint32_t, const char*, const char* key, std::int32_t,
               const char*) { From(self).presets.push_back(std::string("failed ") + key); },
            [](const clap_host* self, std::uint32_t, const char*, const char* key) {
                From(self).presets.push_back(std::string("loaded ") + key);
            }};
        static const std::map<std::string_view, const void*> all{
            {kClapLog, &log},     {kClapThreadCheck, &threads},  {kClapParams, &params},
            {kClapState, &state}, {kClapLatency, &latency},      {kClapTail, &tail},
            {kClapGui, &gui},     {kClapPresetLoad, &presetLoad}};
        const auto found = all.find(name);
        return found != all.end() ? found->second : nullptr;
    }

    std::mutex mMutex;
    std::vector<std::string> mLines;
};

/// Events of a block, both ways.
struct ClapEvents
{
    ClapEvents() { mNotes.reserve(kMostNotes); }

    void Value(clap_id parameter, double value, std::uint32_t time = 0,
               std::uint16_t type = CLAP_EVENT_PARAM_VALUE)
    {
        clap_event_param_value event{};
        event.header = {sizeof event, time, kClapCoreEventSpace, type, 0};
        event.param_id = parameter;
        event.value = value;
        mGiven.emplace_back(event);
    }
    void Midi(std::array<std::uint8_t, 3> bytes, std::uint32_t time = 0)
    {
        clap_event_midi event{};
        event.header = {sizeof event, time, kClapCoreEventSpace, CLAP_EVENT_MIDI, 0};
        std::ranges::copy(bytes, event.data);
        mGiven.emplace_back(event);
    }
    void Clear() { mGiven.clear(); }
    /// What the plug-in has said: "begin 4", "4=300", "end 4", values in thousandths.
    [[nodiscard]] std::vector<std::string> TakeNotes() { return std::exchange(mNotes, {}); }

    const clap_input_events in{
        this,
        [](const clap_input_events* list) {
            return static_cast<std::uint32_t>(From(list->ctx).mGiven.size());
        },
        [](const clap_input_events* list, std::uint32_t index) {
            return std::visit(
                [](const auto& event) -> const clap_event_header* { return &event.header; },
                From(list->ctx).mGiven.at(index));
        }};
    const clap_output_events out{
        this, [](const clap_output_events* list, const clap_event_header* event) {
            auto& self = From(list->ctx);
            if (self.room-- <= 0 || self.mNotes.size() >= kMostNotes)
                return false;
            if (event->type == CLAP_EVENT_PARAM_VALUE) {
                const auto& value = reinterpret_cast<const clap_event_param_value&>(*event);
                self.mNotes.push_back(std::to_string(value.param_id) + "=" +
                                      std::to_string(std::lround(value.value * 1000.0)));
            } else {
                const auto& gesture = reinterpret_cast<const clap_event_param_gesture&>(*event);
                self.mNotes.push_back(
                    (event->type == CLAP_EVENT_PARAM_GESTURE_BEGIN ? "begin " : "end ") +
                    std::to_string(gesture.param_id));
            }
            return true;
        }};
    int room = 1 << 20;  // events that the host takes

private:
    /// Further events are refused, so that taking them allocates nothing in the test of the audio
    /// thread.
    static constexpr std::size_t kMostNotes = 10000;

    static ClapEvents& From(void* self) { return *static_cast<ClapEvents*>(self); }

    std::vector<std::variant<clap_event_param_value, clap_event_midi>> mGiven;
    std::vector<std::string> mNotes;
};

/// A stream of a state in memory, which moves a few bytes a call.
struct ClapText
{
    explicit ClapText(std::string content = {})
        : text(std::move(content))
    {
    }

    const clap_istream in{
        this, [](const clap_istream* stream, void* buffer, std::uint64_t size) -> std::int64_t {
            auto& self = *static_cast<ClapText*>(stream->ctx);
            const std::size_t count =
                std::min({static_cast<std::size_t>(size), self.most, self.text.size() - self.read});
            std::memcpy(buffer, self.text.data() + self.read, count);
            self.read += count;
            return static_cast<std::int64_t>(count);
        }};
    const clap_ostream out{
        this,
        [](const clap_ostream* stream, const void* buffer, std::uint64_t size) -> std::int64_t {
            auto& self = *static_cast<ClapText*>(stream->ctx);
            if (self.isFull)
                return -1;
            const std::size_t count = std::min<std::size_t>(size, self.most);
            self.text.append(static_cast<const char*>(buffer), count);
            return static_cast<std::int64_t>(count);
        }};

    std::string text;
    std::size_t most = 1000;  // bytes a call
    std::size_t read = 0;
    bool isFull = false;
};

/// One instance, made and initialised.
struct ClapInstance
{
    explicit ClapInstance(const ClapLibrary& library)
    {
        const auto& factory = library.Get<clap_plugin_factory>(kClapPluginFactory);
        plugin = factory.create_plugin(&factory, &host.host, "orvane.cantorel-mini");
        if (plugin == nullptr || !plugin->init(plugin))
            throw std::runtime_error("the library makes no instance");
        params = &Get<clap_plugin_params>(kClapParams);
        state = &Get<clap_plugin_state>(kClapState);
        render = &Get<clap_plugin_render>(kClapRender);
        latency = &Get<clap_plugin_latency>(kClapLatency);
        tail = &Get<clap_plugin_tail>(kClapTail);
        gui = &Get<clap_plugin_gui>(kClapGui);
        presets = &Get<clap_plugin_preset_load>(kClapPresetLoad);
    }
    ClapInstance(ClapInstance&&) = delete;
    ~ClapInstance()
    {
        Stop();
        plugin->destroy(plugin);
        EXPECT_EQ(host.TakeLines(), std::vector<std::string>()) << "lines of the log";
    }

    void Start(double rate = 44100.0, std::uint32_t maxBlock = 512)
    {
        ASSERT_TRUE(plugin->activate(plugin, rate, 1, maxBlock));
        host.isAudio = true;
        ASSERT_TRUE(plugin->start_processing(plugin));
        host.isAudio = false;
        mIsRunning = true;
    }
    void Stop()
    {
        if (!std::exchange(mIsRunning, false))
            return;
        host.isAudio = true;
        plugin->stop_processing(plugin);
        host.isAudio = false;
        plugin->deactivate(plugin);
    }
    /// Runs a block in place with the events, which are then cleared; returns the status.
    std::int32_t Run(float* left, float* right, std::uint32_t frames)
    {
        std::array<float*, 2> channels{left, right};
        const clap_audio_buffer in{channels.data(), nullptr, 2, 0, 0};
        clap_audio_buffer out{channels.data(), nullptr, 2, 0, 0};
        const clap_process block{-1, frames, nullptr, &in, &out, 1, 1, &events.in, &events.out};
        host.isAudio = true;
        const std::int32_t status = plugin->process(plugin, &block);
        host.isAudio = false;
        events.Clear();
        return status;
    }
    /// Gives and takes events without a block; those given are then cleared.
    void Flush()
    {
        params->flush(plugin, &events.in, &events.out);
        events.Clear();
    }
    [[nodiscard]] bool IsRunning() const { return mIsRunning; }
    [[nodiscard]] std::string Text() const
    {
        ClapText stream;
        EXPECT_TRUE(state->save(plugin, &stream.out));
        return stream.text;
    }
    [[nodiscard]] bool Load(const std::string& text) const
    {
        ClapText stream(text);
        return state->load(plugin, &stream.in);
    }
    [[nodiscard]] bool LoadPreset(int number) const
    {
        return presets->from_location(plugin, CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN, nullptr,
                                      std::to_string(number).c_str());
    }
    [[nodiscard]] double Value(clap_id parameter) const
    {
        double value = NAN;
        EXPECT_TRUE(params->get_value(plugin, parameter, &value));
        return value;
    }

    template <typename Extension>
    [[nodiscard]] const Extension& Get(const char* name) const
    {
        const void* const extension = plugin->get_extension(plugin, name);
        if (extension == nullptr)
            throw std::runtime_error(std::string("the plug-in has no ") + name);
        return *static_cast<const Extension*>(extension);
    }

    ClapTestHost host;
    ClapEvents events;
    const clap_plugin* plugin = nullptr;
    const clap_plugin_params* params = nullptr;
    const clap_plugin_state* state = nullptr;
    const clap_plugin_render* render = nullptr;
    const clap_plugin_latency* latency = nullptr;
    const clap_plugin_tail* tail = nullptr;
    const clap_plugin_gui* gui = nullptr;
    const clap_plugin_preset_load* presets = nullptr;

private:
    bool mIsRunning = false;
};

}  // namespace orvane
