// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/MidiFile.h"
#include "tools/render/SoundFile.h"
#include "tools/render/WindowShot.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace orvane
{

/// Hosts one instance of a stereo plug-in, whatever its interface. Each object is used by the one
/// thread that created it, as the plug-in's main thread and audio thread in one.
class PluginInstance
{
public:
    PluginInstance() = default;
    PluginInstance(const PluginInstance&) = delete;
    PluginInstance& operator=(const PluginInstance&) = delete;
    virtual ~PluginInstance() = default;

    /// Sets the sample rate, in Hz, and the longest block. Call once, before anything but
    /// parameters' names and what the plug-in is called.
    virtual void SetFormat(int rate, int blockFrames) = 0;
    /// Switches processing on. Process may be called from then on.
    virtual void Start() = 0;
    /// Sets the frame of the input at which the next block starts; negative before the input.
    virtual void MoveTo(std::int64_t frame) = 0;
    /// Latency in frames, as the plug-in reported it last; call after Start.
    [[nodiscard]] virtual int Latency() const = 0;
    /// Processes the frames [first, first + count) of input into those of output; count is at most
    /// the longest block. Call after Start.
    virtual void Process(StereoBlock& input, StereoBlock& output, int first, int count) = 0;
    /// Sends messages that take effect at the start of the next block.
    virtual void Send(std::span<const MidiEvent> events) = 0;

    [[nodiscard]] virtual int ParameterCount() const = 0;
    [[nodiscard]] virtual std::string ParameterName(int index) const = 0;
    /// The name by which the plug-in itself knows the parameter; empty when its interface has none.
    [[nodiscard]] virtual std::string ParameterSymbol(int index) const = 0;
    /// The current value as the plug-in displays it.
    [[nodiscard]] virtual std::string ParameterText(int index) const = 0;
    /// The current value, 0 to 1.
    [[nodiscard]] virtual float Parameter(int index) const = 0;
    virtual void SetParameter(int index, float value) = 0;

    [[nodiscard]] virtual int ProgramCount() const = 0;
    /// Empty when the plug-in gives no name.
    [[nodiscard]] virtual std::string ProgramName(int index) const = 0;
    /// Index of the current program.
    [[nodiscard]] virtual int Program() const = 0;
    virtual void SetProgram(int index) = 0;

    /// What a chunk holds: all programs or the current one.
    enum class Extent
    {
        kBank,
        kProgram,
    };
    /// Whether the plug-in saves its state as chunks, and whether also all its programs in one.
    [[nodiscard]] virtual bool HasChunks() const = 0;
    [[nodiscard]] virtual bool HasBanks() const = 0;
    /// The plug-in's state in its own format; empty when it gives none. Requires HasChunks.
    [[nodiscard]] virtual std::string Chunk(Extent extent) const = 0;
    /// Whether the chunks are XML text with the programs as elements, as those of the product are.
    [[nodiscard]] bool HasTextState() const;
    /// Returns false when the plug-in refuses the chunk. Requires HasChunks.
    [[nodiscard]] virtual bool SetChunk(std::string chunk, Extent extent) = 0;

    /// The current picture of the plug-in's window. Throws ZException when the plug-in has no such
    /// extension.
    [[nodiscard]] virtual WindowPixels Window(float scale) const = 0;

    /// The interface that the plug-in is hosted by, "VST 2.4" or "LV2".
    [[nodiscard]] virtual std::string Format() const = 0;
    /// The plug-in's name, or else that of its file without the ending.
    [[nodiscard]] virtual std::string Name() const = 0;
    [[nodiscard]] virtual std::string Vendor() const = 0;
    [[nodiscard]] virtual std::string Version() const = 0;
    /// The name by which hosts keep the plug-in in projects.
    [[nodiscard]] virtual std::string Identity() const = 0;

    static constexpr int kChannels = 2;  // inputs, and outputs
};

/// Opens an instance of the plug-in in a file: the bundle of an LV2 plug-in, which is a folder, or
/// a VST library. Throws ZException when the file holds no stereo plug-in that gives an output of
/// its own.
[[nodiscard]] std::unique_ptr<PluginInstance> openPlugin(const std::filesystem::path& file);

}  // namespace orvane
