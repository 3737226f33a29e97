// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/Lv2PluginInstance.h"

#include "tools/render/Failure.h"
#include "tools/render/StateText.h"

#include <fmt/format.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/state/state.h>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <set>
#include <string_view>

namespace orvane
{

namespace
{

/// Room for the events of a block; more is made when they need it.
constexpr std::size_t kEventBytes = 8192;

constexpr std::array<const char*, 6> kFeatures{LV2_URID__map,
                                               LV2_URID__unmap,
                                               LV2_OPTIONS__options,
                                               LV2_BUF_SIZE__boundedBlockLength,
                                               LV2_STATE__threadSafeRestore,
                                               LV2_CORE__hardRTCapable};

LV2_Atom_Sequence& sequenceIn(std::vector<std::uint64_t>& room)
{
    return *reinterpret_cast<LV2_Atom_Sequence*>(room.data());
}

std::string textOf(LilvNode* node)
{
    const LilvNodePtr kept(node);
    return node != nullptr ? lilv_node_as_string(node) : "";
}

/// Returns the bytes of a message that stands in three, by its status.
std::uint32_t lengthOf(const MidiEvent& event)
{
    const int kind = event.bytes[0] & 0xF0;
    return kind == 0xC0 || kind == 0xD0 ? 2 : 3;
}

}  // namespace

Lv2PluginInstance::Lv2PluginInstance(const std::filesystem::path& bundle)
    : mFile(bundle)
    , mBundle(bundle)
    , mValues(lilv_plugin_get_num_ports(mBundle.Plugin()))
{
    RequireFeatures();
    SortPorts();
    RequireStereo();
    lilv_plugin_get_port_ranges_float(mBundle.Plugin(), nullptr, nullptr, mValues.data());
    // A port without a default gives no number.
    std::ranges::replace_if(
        mValues, [](float value) { return std::isnan(value); }, 0.0f);
    mDefaults = mValues;
    if (const LilvPort* const port = mBundle.FreeWheelPort())
        mValues[lilv_port_get_index(mBundle.Plugin(), port)] = 1.0f;
}

Lv2PluginInstance::~Lv2PluginInstance()
{
    if (mIsOn)
        lilv_instance_deactivate(mInstance.get());
}

void Lv2PluginInstance::RequireFeatures() const
{
    LilvNodes* const required = lilv_plugin_get_required_features(mBundle.Plugin());
    std::string missing;
    LILV_FOREACH(nodes, i, required)
    {
        const std::string uri = lilv_node_as_uri(lilv_nodes_get(required, i));
        if (std::ranges::find(kFeatures, uri) == kFeatures.end())
            missing = uri;
    }
    lilv_nodes_free(required);
    if (!missing.empty())
        fail("the plug-in in {} needs a host with the feature {}", mFile.string(), missing);
}

void Lv2PluginInstance::SortPorts()
{
    const LilvPlugin* const plugin = mBundle.Plugin();
    for (std::uint32_t i = 0; i < lilv_plugin_get_num_ports(plugin); ++i)
        SortPort(lilv_plugin_get_port_by_index(plugin, i), i);
}

void Lv2PluginInstance::SortPort(const LilvPort* port, std::uint32_t index)
{
    const LilvPlugin* const plugin = mBundle.Plugin();
    const auto isA = [&](const char* uri) {
        return lilv_port_is_a(plugin, port, mBundle.Uri(uri).get());
    };
    const bool isInput = isA(LV2_CORE__InputPort);
    if (isA(LV2_CORE__AudioPort)) {
        (isInput ? mInputs : mOutputs).push_back(index);
    } else if (isA(LV2_ATOM__AtomPort)) {
        if (isInput && !mMidiPort &&
            lilv_port_supports_event(plugin, port, mBundle.Uri(LV2_MIDI__MidiEvent).get()))
            mMidiPort = mEventPorts.size();
        mEventPorts.push_back(
            {index, isInput, std::vector<std::uint64_t>(kEventBytes / sizeof(std::uint64_t))});
    } else if (!isA(LV2_CORE__ControlPort) &&
               !lilv_port_has_property(plugin, port,
                                       mBundle.Uri(LV2_CORE__connectionOptional).get()))
    {
        fail("the plug-in in {} has a port {} of a kind that is not known here", mFile.string(),
             lilv_node_as_string(lilv_port_get_symbol(plugin, port)));
    }
}

void Lv2PluginInstance::RequireStereo() const
{
    if (mInputs.size() != kChannels || mOutputs.size() != kChannels)
        fail("the plug-in in {} has {} inputs and {} outputs: two of each are needed",
             mFile.string(), mInputs.size(), mOutputs.size());
}

void Lv2PluginInstance::SetFormat(int rate, int blockFrames)
{
    assert(!mInstance);
    mBlockFrames = blockFrames;
    const auto rateHz = static_cast<float>(rate);
    const std::array<LV2_Options_Option, 4> options{
        {{LV2_OPTIONS_INSTANCE, 0, mUrids(LV2_BUF_SIZE__maxBlockLength), sizeof mBlockFrames,
          mUrids(LV2_ATOM__Int), &mBlockFrames},
         {LV2_OPTIONS_INSTANCE, 0, mUrids(LV2_BUF_SIZE__nominalBlockLength), sizeof mBlockFrames,
          mUrids(LV2_ATOM__Int), &mBlockFrames},
         {LV2_OPTIONS_INSTANCE, 0, mUrids(LV2_PARAMETERS__sampleRate), sizeof rateHz,
          mUrids(LV2_ATOM__Float), &rateHz},
         {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}}};
    const LV2_Feature map{LV2_URID__map, &mUrids.map};
    const LV2_Feature unmap{LV2_URID__unmap, &mUrids.unmap};
    const LV2_Feature announced{LV2_OPTIONS__options,
                                const_cast<LV2_Options_Option*>(options.data())};
    const LV2_Feature bounded{LV2_BUF_SIZE__boundedBlockLength, nullptr};
    const std::array<const LV2_Feature*, 5> features{&map, &unmap, &announced, &bounded, nullptr};
    mInstance.reset(lilv_plugin_instantiate(mBundle.Plugin(), rate, features.data()));
    if (!mInstance)
        fail("the plug-in in {} does not start", mFile.string());
    ConnectPorts();
}

void Lv2PluginInstance::ConnectPorts()
{
    const LilvNodePtr control = mBundle.Uri(LV2_CORE__ControlPort);
    const LilvNodePtr audio = mBundle.Uri(LV2_CORE__AudioPort);
    for (std::uint32_t i = 0; i < mValues.size(); ++i) {
        const LilvPort* const port = lilv_plugin_get_port_by_index(mBundle.Plugin(), i);
        // Audio ports, too, until the first block, since a port must lead somewhere.
        const bool isFloat = lilv_port_is_a(mBundle.Plugin(), port, control.get()) ||
                             lilv_port_is_a(mBundle.Plugin(), port, audio.get());
        lilv_instance_connect_port(mInstance.get(), i, isFloat ? &mValues[i] : nullptr);
    }
    for (EventPort& port : mEventPorts)
        lilv_instance_connect_port(mInstance.get(), port.index, port.sequence.data());
    ClearEvents();
}

void Lv2PluginInstance::Start()
{
    assert(mInstance && !mIsOn);
    mIsOn = true;
    lilv_instance_activate(mInstance.get());
    Run(0);  // brings the values of the ports into force, and the latency here
}

void Lv2PluginInstance::Run(std::uint32_t frames)
{
    for (EventPort& port : mEventPorts)
        if (!port.isInput)
            sequenceIn(port.sequence).atom = {
                static_cast<std::uint32_t>(port.sequence.size() * sizeof(std::uint64_t) -
                                           sizeof(LV2_Atom)),
                mUrids(LV2_ATOM__Chunk)};
    lilv_instance_run(mInstance.get(), frames);
    ClearEvents();
}

int Lv2PluginInstance::Latency() const
{
    if (!lilv_plugin_has_latency(mBundle.Plugin()))
        return 0;
    const float frames = mValues[lilv_plugin_get_latency_port_index(mBundle.Plugin())];
    return frames > 0.0f ? static_cast<int>(std::lround(frames)) : 0;
}

void Lv2PluginInstance::Process(StereoBlock& input, StereoBlock& output, int first, int count)
{
    assert(mIsOn && first >= 0 && count > 0 && count <= mBlockFrames);
    assert(static_cast<std::size_t>(first + count) <= input[0].size());
    assert(static_cast<std::size_t>(first + count) <= output[0].size());
    for (std::size_t i = 0; i < kChannels; ++i) {
        lilv_instance_connect_port(mInstance.get(), mInputs[i], input[i].data() + first);
        lilv_instance_connect_port(mInstance.get(), mOutputs[i], output[i].data() + first);
    }
    Run(static_cast<std::uint32_t>(count));
}

void Lv2PluginInstance::Send(std::span<const MidiEvent> events)
{
    if (mMidiPort)
        for (const MidiEvent& event : events)
            AddEvent(event);
}

void Lv2PluginInstance::ClearEvents()
{
    for (EventPort& port : mEventPorts) {
        LV2_Atom_Sequence& sequence = sequenceIn(port.sequence);
        sequence.atom = {sizeof(LV2_Atom_Sequence_Body), mUrids(LV2_ATOM__Sequence)};
        sequence.body = {0, 0};
    }
}

void Lv2PluginInstance::AddEvent(const MidiEvent& event)
{
    struct Record
    {
        LV2_Atom_Event event;
        std::array<std::uint8_t, 8> bytes;  // events are padded to 64 bits
    };
    EventPort& port = mEventPorts[*mMidiPort];
    const std::size_t used = sizeof(LV2_Atom) + sequenceIn(port.sequence).atom.size;
    if (used + sizeof(Record) > port.sequence.size() * sizeof(std::uint64_t)) {
        port.sequence.resize(2 * port.sequence.size());
        lilv_instance_connect_port(mInstance.get(), port.index, port.sequence.data());
    }
    Record record{{{0}, {lengthOf(event), mUrids(LV2_MIDI__MidiEvent)}}, {}};
    std::ranges::copy(event.bytes, record.bytes.begin());
    std::memcpy(reinterpret_cast<char*>(port.sequence.data()) + used, &record, sizeof record);
    sequenceIn(port.sequence).atom.size += static_cast<std::uint32_t>(sizeof record);
}

const Lv2PluginBundle::Parameter& Lv2PluginInstance::At(int index) const
{
    assert(index >= 0 && index < ParameterCount());
    return mBundle.Parameters()[static_cast<std::size_t>(index)];
}

std::string Lv2PluginInstance::ParameterName(int index) const
{
    return At(index).name;
}

std::string Lv2PluginInstance::ParameterSymbol(int index) const
{
    return At(index).symbol;
}

std::string Lv2PluginInstance::ParameterText(int index) const
{
    const Lv2PluginBundle::Parameter& parameter = At(index);
    const float value = mValues[parameter.port];
    for (const auto& choice : parameter.choices)
        if (choice.value == value)
            return choice.label;
    if (parameter.isSwitch)
        return value > 0.0f ? "On" : "Off";
    return fmt::format("{:g}{}", value, parameter.unit);
}

float Lv2PluginInstance::Parameter(int index) const
{
    const Lv2PluginBundle::Parameter& parameter = At(index);
    return std::clamp((mValues[parameter.port] - parameter.low) / (parameter.high - parameter.low),
                      0.0f, 1.0f);
}

void Lv2PluginInstance::SetParameter(int index, float value)
{
    assert(value >= 0.0f && value <= 1.0f);
    const Lv2PluginBundle::Parameter& parameter = At(index);
    const float plain = (parameter.high - parameter.low) * value + parameter.low;
    const bool isWhole = parameter.isInteger || parameter.isSwitch;
    mValues[parameter.port] = isWhole ? std::round(plain) : plain;
}

std::string Lv2PluginInstance::ProgramName(int index) const
{
    if (index < 0 || index >= ProgramCount())
        return "none";
    return mBundle.Presets()[static_cast<std::size_t>(index)].name;
}

void Lv2PluginInstance::SetProgram(int index)
{
    assert(mInstance && index >= 0 && index < ProgramCount());
    const std::string& uri = mBundle.Presets()[static_cast<std::size_t>(index)].uri;
    LilvState* const state =
        lilv_state_new_from_world(mBundle.World(), &mUrids.map, mBundle.Uri(uri.c_str()).get());
    if (state == nullptr)
        fail("the preset {} of {} cannot be read", ProgramName(index), mFile.string());
    lilv_state_restore(
        state, mInstance.get(),
        [](const char* symbol, void* self, const void* value, std::uint32_t size,
           std::uint32_t type) {
            auto& plugin = *static_cast<Lv2PluginInstance*>(self);
            for (const auto& parameter : plugin.mBundle.Parameters())
                if (parameter.symbol == symbol && size == sizeof(float) &&
                    type == plugin.mUrids(LV2_ATOM__Float))
                    std::memcpy(&plugin.mValues[parameter.port], value, sizeof(float));
        },
        this, 0, nullptr);
    lilv_state_free(state);
    mProgram = index;
}

const LV2_State_Interface* Lv2PluginInstance::States() const
{
    assert(mInstance);
    return static_cast<const LV2_State_Interface*>(
        lilv_instance_get_extension_data(mInstance.get(), LV2_STATE__interface));
}

std::optional<Lv2PluginInstance::TextState> Lv2PluginInstance::State() const
{
    struct Saved
    {
        LV2_URID stringType;
        int count = 0;
        std::optional<TextState> text;
    };
    if (States() == nullptr)
        return std::nullopt;
    Saved saved{mUrids(LV2_ATOM__String), 0, std::nullopt};
    States()->save(
        lilv_instance_get_handle(mInstance.get()),
        [](LV2_State_Handle handle, std::uint32_t key, const void* value, std::size_t size,
           std::uint32_t type, std::uint32_t) {
            auto& target = *static_cast<Saved*>(handle);
            ++target.count;
            if (type == target.stringType) {
                const auto* const text = static_cast<const char*>(value);
                target.text = TextState{key, {text, ::strnlen(text, size)}};
            }
            return LV2_STATE_SUCCESS;
        },
        &saved, LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE, nullptr);
    return saved.count == 1 ? saved.text : std::nullopt;
}

bool Lv2PluginInstance::HasChunks() const
{
    return State().has_value();
}

std::string Lv2PluginInstance::Chunk(Extent extent) const
{
    assert(extent == Extent::kProgram);
    const std::optional<TextState> state = State();
    return extent == Extent::kProgram && state ? state->text : "";
}

bool Lv2PluginInstance::SetChunk(std::string chunk, Extent extent)
{
    assert(extent == Extent::kProgram);
    const std::optional<TextState> before = State();
    if (extent != Extent::kProgram || !before)
        return false;
    struct Given
    {
        LV2_URID key;
        LV2_URID type;
        const std::string& text;
    } given{before->key, mUrids(LV2_ATOM__String), chunk};
    const LV2_State_Status status = States()->restore(
        lilv_instance_get_handle(mInstance.get()),
        [](LV2_State_Handle handle, std::uint32_t key, std::size_t* size, std::uint32_t* type,
           std::uint32_t* flags) -> const void* {
            const auto& source = *static_cast<Given*>(handle);
            if (key != source.key)
                return nullptr;
            *size = source.text.size() + 1;
            *type = source.type;
            *flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
            return source.text.c_str();
        },
        &given, 0, nullptr);
    if (status != LV2_STATE_SUCCESS)
        return false;
    TakePorts(Chunk(Extent::kProgram));
    return true;
}

// A text leaves out only what is at its default.
void Lv2PluginInstance::TakePorts(const std::string& text)
{
    const StateText state(text);
    for (const auto& parameter : mBundle.Parameters()) {
        const StateElement* const element = state.Find(parameter.symbol);
        if (element && element->number)
            mValues[parameter.port] = *element->number;
        else if (element && element->index)
            mValues[parameter.port] = static_cast<float>(*element->index);
        else
            mValues[parameter.port] = mDefaults[parameter.port];
    }
}

WindowPixels Lv2PluginInstance::Window(float /*scale*/) const
{
    fail("the plug-in in {} does not tell what its window shows: an LV2 plug-in has no picture of "
         "it, the VST library has",
         mFile.string());
}

std::string Lv2PluginInstance::Name() const
{
    const std::string name = textOf(lilv_plugin_get_name(mBundle.Plugin()));
    return name.empty() ? mFile.stem().string() : name;
}

std::string Lv2PluginInstance::Vendor() const
{
    return textOf(lilv_plugin_get_author_name(mBundle.Plugin()));
}

std::string Lv2PluginInstance::Version() const
{
    const auto number = [this](const char* uri) {
        const LilvNodePtr node(lilv_world_get(mBundle.World(),
                                              lilv_plugin_get_uri(mBundle.Plugin()),
                                              mBundle.Uri(uri).get(), nullptr));
        return node ? lilv_node_as_int(node.get()) : 0;
    };
    return fmt::format("{}.{}", number(LV2_CORE__minorVersion), number(LV2_CORE__microVersion));
}

std::string Lv2PluginInstance::Identity() const
{
    return lilv_node_as_uri(lilv_plugin_get_uri(mBundle.Plugin()));
}

}  // namespace orvane
