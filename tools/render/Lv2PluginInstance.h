// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/Lv2PluginBundle.h"
#include "tools/render/PluginInstance.h"
#include "tools/render/UridMap.h"

#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/state/state.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orvane
{

/// Hosts one instance of an LV2 plug-in, by lilv. Parameters are its control inputs, programs its
/// presets, and a chunk of one program is the text that its state consists of.
class Lv2PluginInstance : public PluginInstance
{
public:
    /// Reads the bundle. Throws ZException when the folder is none, or its plug-in is not stereo or
    /// needs what this host does not have.
    explicit Lv2PluginInstance(const std::filesystem::path& bundle);
    ~Lv2PluginInstance() override;

    /// Makes the instance, and throws ZException when it does not start.
    void SetFormat(int rate, int blockFrames) override;
    void Start() override;
    void MoveTo(std::int64_t /*frame*/) override {}
    [[nodiscard]] int Latency() const override;
    void Process(StereoBlock& input, StereoBlock& output, int first, int count) override;
    void Send(std::span<const MidiEvent> events) override;

    [[nodiscard]] int ParameterCount() const override
    {
        return static_cast<int>(mBundle.Parameters().size());
    }
    [[nodiscard]] std::string ParameterName(int index) const override;
    [[nodiscard]] std::string ParameterSymbol(int index) const override;
    [[nodiscard]] std::string ParameterText(int index) const override;
    [[nodiscard]] float Parameter(int index) const override;
    void SetParameter(int index, float value) override;

    [[nodiscard]] int ProgramCount() const override
    {
        return static_cast<int>(mBundle.Presets().size());
    }
    [[nodiscard]] std::string ProgramName(int index) const override;
    /// Before SetProgram -1, for the values that the plug-in starts with.
    [[nodiscard]] int Program() const override { return mProgram; }
    void SetProgram(int index) override;

    [[nodiscard]] bool HasChunks() const override;
    [[nodiscard]] bool HasBanks() const override { return false; }
    [[nodiscard]] std::string Chunk(Extent extent) const override;
    /// Sets the ports, too, since they count more than the state: each whose symbol is the name of
    /// an element in the plug-in's new text.
    [[nodiscard]] bool SetChunk(std::string chunk, Extent extent) override;

    [[nodiscard]] WindowPixels Window(float scale) const override;

    [[nodiscard]] std::string Format() const override { return "LV2"; }
    [[nodiscard]] std::string Name() const override;
    [[nodiscard]] std::string Vendor() const override;
    [[nodiscard]] std::string Version() const override;
    [[nodiscard]] std::string Identity() const override;

private:
    struct InstanceDeleter
    {
        void operator()(LilvInstance* instance) const { lilv_instance_free(instance); }
    };
    /// An input or output of events: a sequence, in units that are aligned as one.
    struct EventPort
    {
        std::uint32_t index;
        bool isInput;
        std::vector<std::uint64_t> sequence;
    };
    /// A state that consists of one text.
    struct TextState
    {
        LV2_URID key;
        std::string text;
    };

    void RequireFeatures() const;
    void SortPorts();
    void SortPort(const LilvPort* port, std::uint32_t index);
    void RequireStereo() const;
    void ConnectPorts();
    void Run(std::uint32_t frames);
    void ClearEvents();
    void AddEvent(const MidiEvent& event);
    [[nodiscard]] std::optional<TextState> State() const;
    void TakePorts(const std::string& text);
    [[nodiscard]] const LV2_State_Interface* States() const;
    [[nodiscard]] const Lv2PluginBundle::Parameter& At(int index) const;

    std::filesystem::path mFile;
    Lv2PluginBundle mBundle;
    mutable UridMap mUrids;      // saving a state names its properties
    std::vector<float> mValues;  // of control ports, by the index of the port
    std::vector<float> mDefaults;
    std::vector<std::uint32_t> mInputs;
    std::vector<std::uint32_t> mOutputs;
    std::vector<EventPort> mEventPorts;
    std::optional<std::size_t> mMidiPort;  // index in mEventPorts
    std::int32_t mBlockFrames = 0;
    int mProgram = -1;
    bool mIsOn = false;
    std::unique_ptr<LilvInstance, InstanceDeleter> mInstance;  // first to go
};

}  // namespace orvane
