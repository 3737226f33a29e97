// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "tools/render/MidiFile.h"
#include "tools/render/OfflineHost.h"
#include "tools/render/PluginLibrary.h"
#include "tools/render/SoundFile.h"
#include "tools/render/WindowShot.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace orvane
{

/// Hosts one instance of a plug-in through the published interface. Each object is used by the one
/// thread that created it, as the plug-in's main thread and audio thread in one.
class PluginInstance
{
public:
    /// Loads a library and opens an instance of its plug-in. Throws ZException when the file is not
    /// a plug-in, or not a stereo plug-in with processReplacing.
    explicit PluginInstance(const std::filesystem::path& library);
    PluginInstance(const PluginInstance&) = delete;
    PluginInstance& operator=(const PluginInstance&) = delete;
    ~PluginInstance();

    /// Sets the sample rate, in Hz, and the longest block. Call before Start.
    void SetFormat(int rate, int blockFrames);
    /// Switches processing on. Process may be called from then on.
    void Start();
    /// Sets the frame of the input at which the next block starts; negative before the input.
    void MoveTo(std::int64_t frame) { mFrame = frame; }
    /// Latency in frames, as the plug-in reported it last; call after Start.
    [[nodiscard]] int Latency() const { return mLatency; }
    /// Processes the frames [first, first + count) of input into those of output; count is at most
    /// the longest block. Call after Start.
    void Process(StereoBlock& input, StereoBlock& output, int first, int count);
    /// Sends messages that take effect at the start of the next block.
    void Send(std::span<const MidiEvent> events);

    [[nodiscard]] int ParameterCount() const { return mEffect->numParams; }
    [[nodiscard]] std::string ParameterName(int index) const;
    /// The current value as the plug-in displays it.
    [[nodiscard]] std::string ParameterText(int index) const;
    /// The current value, 0 to 1.
    [[nodiscard]] float Parameter(int index) const;
    void SetParameter(int index, float value);

    [[nodiscard]] int ProgramCount() const { return mEffect->numPrograms; }
    /// Empty when the plug-in gives no name.
    [[nodiscard]] std::string ProgramName(int index) const;
    /// Index of the current program.
    [[nodiscard]] int Program() const { return static_cast<int>(Ask(effGetProgram)); }
    void SetProgram(int index);

    /// What a chunk holds: all programs or the current one.
    enum class Extent
    {
        kBank,
        kProgram,
    };
    /// Whether the plug-in saves its state as chunks.
    [[nodiscard]] bool HasChunks() const { return (mEffect->flags & effFlagsProgramChunks) != 0; }
    /// The plug-in's state in its own format; empty when it gives none. Requires HasChunks.
    [[nodiscard]] std::string Chunk(Extent extent) const;
    /// Whether the chunks are XML text with the programs as elements, as those of the product are.
    [[nodiscard]] bool HasTextState() const;
    /// Returns false when the plug-in refuses the chunk. Requires HasChunks.
    [[nodiscard]] bool SetChunk(std::string chunk, Extent extent);

    /// The current picture of the plug-in's window. Throws ZException when the plug-in has no such
    /// extension.
    [[nodiscard]] WindowPixels Window(float scale) const;

    /// The plug-in's effect name, or else the name of its file without the ending.
    [[nodiscard]] std::string Name() const;
    [[nodiscard]] std::string Vendor() const;
    [[nodiscard]] int Version() const { return mEffect->version; }
    [[nodiscard]] std::uint32_t UniqueId() const
    {
        return static_cast<std::uint32_t>(mEffect->uniqueID);
    }
    [[nodiscard]] int Inputs() const { return mEffect->numInputs; }
    [[nodiscard]] int Outputs() const { return mEffect->numOutputs; }

private:
    struct Closer
    {
        void operator()(AEffect* effect) const;
    };

    static std::intptr_t hostCallback(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                      std::intptr_t value, void* ptr, float opt);

    std::intptr_t Ask(std::int32_t opcode, std::int32_t index = 0, std::intptr_t value = 0,
                      void* ptr = nullptr, float opt = 0.0f) const;
    [[nodiscard]] std::string AskText(std::int32_t opcode, std::int32_t index = 0,
                                      std::intptr_t value = 0) const;
    void RequireStereo() const;

    std::filesystem::path mFile;
    PluginLibrary mLibrary;
    OfflineHost mHost;
    std::atomic<int> mLatency{
        0};  // written by any thread of the plug-in, read by the thread of this object
    std::unique_ptr<AEffect, Closer> mEffect;
    std::int64_t mFrame = 0;  // at which the next block starts
    bool mIsOn = false;
};

}  // namespace orvane
