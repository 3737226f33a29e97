// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "tools/render/OfflineHost.h"
#include "tools/render/PluginInstance.h"
#include "tools/render/PluginLibrary.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace orvane
{

/// Hosts one instance of a VST 2.4 plug-in.
class VstPluginInstance : public PluginInstance
{
public:
    /// Loads a library and opens an instance of its plug-in. Throws ZException when the file is not
    /// a plug-in, or not a stereo plug-in with processReplacing.
    explicit VstPluginInstance(const std::filesystem::path& library);
    ~VstPluginInstance() override;

    void SetFormat(int rate, int blockFrames) override;
    void Start() override;
    void MoveTo(std::int64_t frame) override { mFrame = frame; }
    [[nodiscard]] int Latency() const override { return mLatency; }
    void Process(StereoBlock& input, StereoBlock& output, int first, int count) override;
    void Send(std::span<const MidiEvent> events) override;

    [[nodiscard]] int ParameterCount() const override { return mEffect->numParams; }
    [[nodiscard]] std::string ParameterName(int index) const override;
    [[nodiscard]] std::string ParameterSymbol(int /*index*/) const override { return {}; }
    [[nodiscard]] std::string ParameterText(int index) const override;
    [[nodiscard]] float Parameter(int index) const override;
    void SetParameter(int index, float value) override;

    [[nodiscard]] int ProgramCount() const override { return mEffect->numPrograms; }
    [[nodiscard]] std::string ProgramName(int index) const override;
    [[nodiscard]] int Program() const override { return static_cast<int>(Ask(effGetProgram)); }
    void SetProgram(int index) override;

    [[nodiscard]] bool HasChunks() const override
    {
        return (mEffect->flags & effFlagsProgramChunks) != 0;
    }
    [[nodiscard]] bool HasBanks() const override { return HasChunks(); }
    [[nodiscard]] std::string Chunk(Extent extent) const override;
    [[nodiscard]] bool SetChunk(std::string chunk, Extent extent) override;

    [[nodiscard]] WindowPixels Window(float scale) const override;

    [[nodiscard]] std::string Format() const override { return "VST 2.4"; }
    [[nodiscard]] std::string Name() const override;
    [[nodiscard]] std::string Vendor() const override;
    [[nodiscard]] std::string Version() const override { return std::to_string(mEffect->version); }
    /// The unique id in hexadecimal digits, and quoted if all its characters are printable.
    [[nodiscard]] std::string Identity() const override;

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
