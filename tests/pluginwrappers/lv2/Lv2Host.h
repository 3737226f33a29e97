// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Test.h"
#include "tools/render/UridMap.h"

#include <dlfcn.h>
#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/midi/midi.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/state/state.h>
#include <lv2/ui/ui.h>
#include <xcb/xcb.h>

namespace orvane
{

/// The built bundle as hosts read it, and nothing else.
struct Lv2Bundle
{
    Lv2Bundle()
        : world(lilv_world_new())
    {
        LilvNode* const uri =
            lilv_new_file_uri(world, nullptr, (std::string(KESTRUNE_LV2_BUNDLE) + "/").c_str());
        lilv_world_load_bundle(world, uri);
        lilv_node_free(uri);
        LilvNode* const name = lilv_new_uri(world, "urn:orvane:cantorel-mini");
        plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), name);
        lilv_node_free(name);
        if (plugin == nullptr)
            throw std::runtime_error("the bundle holds no plug-in");
    }
    Lv2Bundle(Lv2Bundle&&) = delete;
    ~Lv2Bundle() { lilv_world_free(world); }

    /// Returns the index of a port; the number of ports for an unknown symbol.
    [[nodiscard]] std::uint32_t PortOf(const std::string& symbol) const
    {
        LilvNode* const node = lilv_new_string(world, symbol.c_str());
        const LilvPort* const port = lilv_plugin_get_port_by_symbol(plugin, node);
        lilv_node_free(node);
        return port != nullptr ? lilv_port_get_index(plugin, port)
                               : lilv_plugin_get_num_ports(plugin);
    }
    [[nodiscard]] LilvState* Preset(int number)
    {
        const std::string uri = "urn:orvane:cantorel-mini#preset-" + std::to_string(number);
        LilvNode* const node = lilv_new_uri(world, uri.c_str());
        lilv_world_load_resource(world, node);
        LilvState* const state = lilv_state_new_from_world(world, &urids.map, node);
        lilv_node_free(node);
        return state;
    }

    LilvWorld* const world;
    const LilvPlugin* plugin = nullptr;
    UridMap urids;
};

/// One instance with all its ports connected, at first to the defaults of the bundle.
struct Lv2Instance
{
    explicit Lv2Instance(Lv2Bundle& bundle, double rate = 44100.0, std::int32_t maxBlock = 512)
        : mBundle(bundle)
        , mMaxBlock(maxBlock)
        , values(lilv_plugin_get_num_ports(bundle.plugin))
    {
        lilv_plugin_get_port_ranges_float(bundle.plugin, nullptr, nullptr, values.data());
        const std::array<LV2_Options_Option, 2> options{
            {{LV2_OPTIONS_INSTANCE, 0, bundle.urids(LV2_BUF_SIZE__maxBlockLength), sizeof mMaxBlock,
              bundle.urids(LV2_ATOM__Int), &mMaxBlock},
             {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}}};
        const LV2_Feature map{LV2_URID__map, &bundle.urids.map};
        const LV2_Feature announced{LV2_OPTIONS__options,
                                    const_cast<LV2_Options_Option*>(options.data())};
        const LV2_Feature* const features[] = {&map, &announced, nullptr};
        instance = lilv_plugin_instantiate(bundle.plugin, rate, features);
        if (instance == nullptr)
            throw std::runtime_error("the bundle makes no instance");
        for (std::uint32_t i = 0; i < values.size(); ++i)
            lilv_instance_connect_port(instance, i, &values[i]);
        Connect("midi_in", mMidi.data());
        Connect("notify", notify.data());
        ClearEvents();
    }
    Lv2Instance(Lv2Instance&&) = delete;
    ~Lv2Instance() { lilv_instance_free(instance); }

    void Connect(const std::string& symbol, void* data) const
    {
        lilv_instance_connect_port(instance, mBundle.PortOf(symbol), data);
    }
    float& Value(const std::string& symbol) { return values.at(mBundle.PortOf(symbol)); }
    void Activate() const { lilv_instance_activate(instance); }
    void Deactivate() const { lilv_instance_deactivate(instance); }

    /// Adds a MIDI message to the next block.
    void Send(const std::array<std::uint8_t, 3>& midi)
    {
        struct Event
        {
            LV2_Atom_Event event;
            std::array<std::uint8_t, 8> bytes;
        };
        Event event{{{0}, {3, mBundle.urids(LV2_MIDI__MidiEvent)}}, {midi[0], midi[1], midi[2]}};
        auto* const sequence = reinterpret_cast<LV2_Atom_Sequence*>(mMidi.data());
        std::memcpy(reinterpret_cast<char*>(mMidi.data()) + sizeof(LV2_Atom) + sequence->atom.size,
                    &event, sizeof event);
        sequence->atom.size += static_cast<std::uint32_t>(sizeof event);
    }
    /// Takes the messages back.
    void ClearEvents()
    {
        auto* const sequence = reinterpret_cast<LV2_Atom_Sequence*>(mMidi.data());
        sequence->atom = {sizeof(LV2_Atom_Sequence_Body), mSequenceType};
        sequence->body = {0, 0};
    }
    /// Runs one block in place over left and right.
    void Run(float* left, float* right, std::uint32_t frames)
    {
        Connect("in_left", left);
        Connect("in_right", right);
        Connect("out_left", left);
        Connect("out_right", right);
        Run(frames);
    }
    void Run(std::uint32_t frames)
    {
        auto* const port = reinterpret_cast<LV2_Atom*>(notify.data());
        port->size = static_cast<std::uint32_t>(sizeof notify - sizeof *port);
        lilv_instance_run(instance, frames);
        ClearEvents();
    }
    /// Activates, and runs the voice through both channels, in blocks; returns the left output.
    [[nodiscard]] std::vector<float> Play(const std::vector<float>& voice, std::size_t block = 512)
    {
        std::vector<float> left = voice;
        std::vector<float> right = voice;
        Activate();
        for (std::size_t at = 0; at < voice.size(); at += block)
            Run(left.data() + at, right.data() + at,
                static_cast<std::uint32_t>(std::min(block, voice.size() - at)));
        Deactivate();
        return left;
    }

    void Restore(const LilvState* state)
    {
        lilv_state_restore(
            state, instance,
            [](const char* symbol, void* self, const void* value, std::uint32_t, std::uint32_t) {
                std::memcpy(&static_cast<Lv2Instance*>(self)->Value(symbol), value, sizeof(float));
            },
            this, 0, nullptr);
    }
    [[nodiscard]] const LV2_State_Interface* States() const
    {
        return static_cast<const LV2_State_Interface*>(
            lilv_instance_get_extension_data(instance, LV2_STATE__interface));
    }
    [[nodiscard]] const LV2_Options_Interface* Options() const
    {
        return static_cast<const LV2_Options_Interface*>(
            lilv_instance_get_extension_data(instance, LV2_OPTIONS__interface));
    }
    /// Returns the text of the saved state; empty when nothing was stored.
    [[nodiscard]] std::string Text() const
    {
        std::string text;
        States()->save(
            Handle(),
            [](LV2_State_Handle target, std::uint32_t, const void* value, std::size_t size,
               std::uint32_t, std::uint32_t) {
                static_cast<std::string*>(target)->assign(static_cast<const char*>(value),
                                                          size - 1);
                return LV2_STATE_SUCCESS;
            },
            &text, LV2_STATE_IS_POD, nullptr);
        return text;
    }
    LV2_State_Status RestoreText(const std::string& text, const char* type = LV2_ATOM__String) const
    {
        struct Source
        {
            const std::string& text;
            std::uint32_t type;
        } source{text, mBundle.urids(type)};
        return States()->restore(
            Handle(),
            [](LV2_State_Handle from, std::uint32_t, std::size_t* size, std::uint32_t* valueType,
               std::uint32_t* flags) -> const void* {
                const auto& given = *static_cast<Source*>(from);
                *size = given.text.size() + 1;
                *valueType = given.type;
                *flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
                return given.text.c_str();
            },
            &source, 0, nullptr);
    }
    [[nodiscard]] LV2_Handle Handle() const { return lilv_instance_get_handle(instance); }

private:
    Lv2Bundle& mBundle;
    const LV2_URID mSequenceType = mBundle.urids(LV2_ATOM__Sequence);
    std::int32_t mMaxBlock;
    std::array<std::uint64_t, 256> mMidi{};

public:
    std::vector<float> values;  // of control ports, by index
    std::array<std::uint64_t, 64> notify{};
    LilvInstance* instance = nullptr;
};

/// A host's window with the plug-in's in it; records what the plug-in tells its host, "begin 8",
/// "8=1000" (in thousandths), "end 8", and sets ports as it is told.
struct Lv2WindowHost
{
    Lv2WindowHost(Lv2Bundle& bundle, Lv2Instance& instance, xcb_window_t parent,
                  const std::string& without = {}, float scaleFactor = 0.0f)
        : mInstance(instance)
        , mScaleFactor(scaleFactor)
    {
        mOptions[0] = {LV2_OPTIONS_INSTANCE,
                       0,
                       bundle.urids(LV2_UI__scaleFactor),
                       sizeof mScaleFactor,
                       bundle.urids(LV2_ATOM__Float),
                       &mScaleFactor};
        const std::array<LV2_Feature, 6> all{
            {{LV2_INSTANCE_ACCESS_URI, instance.Handle()},
             {LV2_UI__parent, reinterpret_cast<void*>(static_cast<std::uintptr_t>(parent))},
             {LV2_UI__touch, &mTouch},
             {LV2_UI__resize, &mResize},
             {LV2_URID__map, &bundle.urids.map},
             {LV2_OPTIONS__options, mOptions.data()}}};
        std::vector<const LV2_Feature*> features;
        for (const LV2_Feature& feature : all)
            if (feature.URI != without && (scaleFactor > 0.0f || feature.data != mOptions.data()))
                features.push_back(&feature);
        features.push_back(nullptr);
        ui = Descriptor(bundle).instantiate(&Descriptor(bundle), "urn:orvane:cantorel-mini", "",
                                            write, this, &widget, features.data());
        mCleanup = Descriptor(bundle).cleanup;
        mIdle = static_cast<const LV2UI_Idle_Interface*>(
            Descriptor(bundle).extension_data(LV2_UI__idleInterface));
        mSetOptions = static_cast<const LV2_Options_Interface*>(
            Descriptor(bundle).extension_data(LV2_OPTIONS__interface));
    }
    Lv2WindowHost(Lv2WindowHost&&) = delete;
    ~Lv2WindowHost() { Close(); }

    void Close()
    {
        if (ui != nullptr)
            mCleanup(std::exchange(ui, nullptr));
    }

    /// Gives the window time; returns false when it says that it has ended.
    [[nodiscard]] bool Idle() const { return mIdle->idle(ui) == 0; }

    /// Wishes another scale of the open window.
    void SetScaleFactor(float scaleFactor)
    {
        mScaleFactor = scaleFactor;
        EXPECT_EQ(mSetOptions->set(ui, mOptions.data()), LV2_OPTIONS_SUCCESS);
    }

    std::vector<std::string> notes;
    std::array<int, 2> size{};  // that the plug-in has asked for
    bool refusesSizes = false;
    bool setsPorts = true;
    LV2UI_Widget widget = nullptr;
    LV2UI_Handle ui = nullptr;

private:
    static const LV2UI_Descriptor& Descriptor(Lv2Bundle& bundle)
    {
        LilvUIs* const uis = lilv_plugin_get_uis(bundle.plugin);
        const LilvUI* const found = lilv_uis_get(uis, lilv_uis_begin(uis));
        char* const path = lilv_node_get_path(lilv_ui_get_binary_uri(found), nullptr);
        // The instance keeps the library loaded.
        void* const library = ::dlopen(path, RTLD_NOW);
        lilv_free(path);
        lilv_uis_free(uis);
        const auto entry =
            reinterpret_cast<LV2UI_DescriptorFunction>(::dlsym(library, "lv2ui_descriptor"));
        const LV2UI_Descriptor* const descriptor = entry(0);
        ::dlclose(library);
        return *descriptor;
    }
    static void write(LV2UI_Controller self, std::uint32_t port, std::uint32_t size,
                      std::uint32_t protocol, const void* value)
    {
        auto& host = *static_cast<Lv2WindowHost*>(self);
        EXPECT_EQ(size, sizeof(float));
        EXPECT_EQ(protocol, 0u);
        const float number = *static_cast<const float*>(value);
        host.notes.push_back(std::to_string(port) + "=" +
                             std::to_string(std::lround(number * 1000.0f)));
        if (host.setsPorts)
            host.mInstance.values.at(port) = number;
    }

    Lv2Instance& mInstance;
    float mScaleFactor;
    std::array<LV2_Options_Option, 2> mOptions{};
    LV2UI_Touch mTouch{this, [](LV2UI_Feature_Handle self, std::uint32_t port, bool isGrabbed) {
                           static_cast<Lv2WindowHost*>(self)->notes.push_back(
                               (isGrabbed ? "begin " : "end ") + std::to_string(port));
                       }};
    LV2UI_Resize mResize{this, [](LV2UI_Feature_Handle self, int width, int height) {
                             auto& host = *static_cast<Lv2WindowHost*>(self);
                             host.size = {width, height};
                             return host.refusesSizes ? 1 : 0;
                         }};
    void (*mCleanup)(LV2UI_Handle) = nullptr;
    const LV2UI_Idle_Interface* mIdle = nullptr;
    const LV2_Options_Interface* mSetOptions = nullptr;
};

}  // namespace orvane
