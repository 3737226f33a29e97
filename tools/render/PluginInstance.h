// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"
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

/// A plug-in, hosted: loaded, opened, fed and closed through the published interface alone.
class PluginInstance
{
public:
    /// Loads a library and opens an instance of its plug-in. Throws ZException where the file is no
    /// plug-in, or none that replaces sound in two channels.
    explicit PluginInstance(const std::filesystem::path& library);
    PluginInstance(const PluginInstance&) = delete;
    PluginInstance& operator=(const PluginInstance&) = delete;
    ~PluginInstance();

    /// Announces the rate, in Hz, and the size of the blocks to come. Before Start.
    void SetFormat(int rate, int blockFrames);
    /// Switches processing on: blocks may come.
    void Start();
    /// Frames from input to output, as last told; needs Start.
    [[nodiscard]] int Latency() const { return mLatency; }
    /// Runs count frames, from the frame first of both on; count is at most the announced size.
    /// Needs Start.
    void Process(StereoBlock& input, StereoBlock& output, int first, int count);
    /// Messages that act from the next block on.
    void Send(std::span<const MidiEvent> events);

    [[nodiscard]] int ParameterCount() const { return mEffect->numParams; }
    [[nodiscard]] std::string ParameterName(int index) const;
    /// The value in force, as the plug-in words it.
    [[nodiscard]] std::string ParameterText(int index) const;
    /// Of any parameter, 0 to 1.
    [[nodiscard]] float Parameter(int index) const;
    void SetParameter(int index, float value);
    /// How often the plug-in has told of a value of a parameter.
    [[nodiscard]] int AutomationCalls() const { return mHost.AutomationCalls(); }

    [[nodiscard]] int ProgramCount() const { return mEffect->numPrograms; }
    /// Empty where the plug-in does not tell.
    [[nodiscard]] std::string ProgramName(int index) const;
    void SetProgram(int index);

    /// All programs, or the current one alone.
    enum class Extent
    {
        kBank,
        kProgram,
    };
    /// Whether the plug-in stores itself as chunks.
    [[nodiscard]] bool HasChunks() const { return (mEffect->flags & effFlagsProgramChunks) != 0; }
    /// The plug-in's state, in a form of its own; empty where it gives none. Needs HasChunks.
    [[nodiscard]] std::string Chunk(Extent extent) const;
    /// False where the plug-in refuses the chunk. Needs HasChunks.
    [[nodiscard]] bool SetChunk(std::string chunk, Extent extent);

    /// What its window shows now. Throws ZException where the plug-in does not tell.
    [[nodiscard]] WindowPixels Window() const;

    /// The plug-in's own name, or that of its file.
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
    void RequireFitting() const;

    std::filesystem::path mFile;
    PluginLibrary mLibrary;
    OfflineHost mHost;
    std::atomic<int> mLatency{0};  // written by any thread of the plug-in's
    std::unique_ptr<AEffect, Closer> mEffect;
    std::int64_t mFrame = 0;  // where the next block begins
    bool mIsOn = false;
};

}  // namespace orvane
