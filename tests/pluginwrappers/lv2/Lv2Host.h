// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Test.h"
#include "tools/render/UridMap.h"

#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/midi/midi.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/state/state.h>

namespace orvane
{

/// The built bundle as hosts read it, and nothing else.
class Lv2Bundle
{
public:
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
    Lv2Bundle(const Lv2Bundle&) = delete;
    Lv2Bundle& operator=(const Lv2Bundle&) = delete;
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
class Lv2Instance
{
public:
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
    Lv2Instance(const Lv2Instance&) = delete;
    Lv2Instance& operator=(const Lv2Instance&) = delete;
    ~Lv2Instance() { lilv_instance_free(instance); }

    void Connect(const std::string& symbol, void* data) const
    {
        lilv_instance_connect_port(instance, mBundle.PortOf(symbol), data);
    }
    [[nodiscard]] float& Value(const std::string& symbol)
    {
        return values.at(mBundle.PortOf(symbol));
    }
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

}  // namespace orvane
