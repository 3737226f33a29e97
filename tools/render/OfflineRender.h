// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/PitchTrack.h"
#include "tools/render/PluginState.h"
#include "tools/render/RenderSettings.h"
#include "tools/render/SoundFile.h"
#include "tools/render/StateText.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvane
{

class PluginInstance;

/// The options of a picture of the plug-in's window.
struct WindowRequest
{
    std::filesystem::path file;  // empty: no picture
    std::optional<double>
        seconds;         // of the input after which it is drawn; without a value, at the end
    float scale = 1.0f;  // pixels of the picture on the side of a pixel of the window at 100 %
};

/// The options of a render. Empty paths and texts were not given.
struct RenderRequest
{
    std::filesystem::path input;   // "-" for standard input
    std::filesystem::path output;  // "-" for standard output
    std::string format;            // of the output, as parseFormat takes it
    std::filesystem::path plot;    // PNG of the pitch
    std::filesystem::path report;  // JSON
    WindowRequest window;
    StateRequest state;
    RenderSettings settings;           // applied after the state
    std::filesystem::path saveChunk;   // written after state and settings are applied
    std::filesystem::path savePreset;  // as saveChunk
    std::filesystem::path automation;  // CSV of settings by time
    std::filesystem::path midi;        // a Standard MIDI File
    int blockFrames = 512;             // longest block, 1 .. 65536 frames
    bool keepsLatency = false;         // the latency stays at the start of the output

    /// Whether any option asks for a state, settings or notes.
    [[nodiscard]] bool AsksForChange() const;
};

/// The figures of a finished render.
struct RenderResult
{
    SoundFormat format;           // of the output
    std::string plugin;           // its name
    std::string interface;        // by which it was hosted
    std::string program;          // name of the current program
    RenderSettings settings;      // in force when the render started
    CurrentScale scale;           // in force when the render started
    std::int64_t frames = 0;      // of the input
    int latency = 0;              // frames
    bool latencyMoved = false;    // after output was written, too late to compensate
    std::size_t eventsLeft = 0;   // automation points and messages past the end of the input
    double runSeconds = 0.0;      // that the whole run took, reading and analysis included
    std::int64_t badSamples = 0;  // of the input that were not finite and were replaced by 0
    float peak = 0.0f;            // of the output, full scale at 1.0
    ScaleDistance before;
    ScaleDistance after;
    std::vector<PitchPoint> points;
    std::vector<std::string> notes;  // about options that had no effect

    [[nodiscard]] double Seconds() const { return static_cast<double>(frames) / format.rate; }
    [[nodiscard]] double LatencyMs() const { return 1000.0 * latency / format.rate; }
    /// Whether neither correction nor transposition was on at the start.
    [[nodiscard]] bool IsDry() const
    {
        return !settings.IsOn(Setting::kPitchCorrectionOnOff) &&
               !settings.IsOn(Setting::kTransposeOnOff);
    }
    /// Seconds of sound for each second of the whole run.
    [[nodiscard]] double TimesRealtime() const
    {
        return runSeconds > 0.0 ? Seconds() / runSeconds : 0.0;
    }
};

/// Takes the number of frames that were processed since the last call.
using ProgressCallback = std::function<void(std::int64_t frames)>;

/// Renders the input to the output and writes the other files that were asked for: all of them or,
/// on failure, none. The output has as many frames as the input and is aligned with it; with
/// keepsLatency it starts with the plug-in's latency and is longer by it. Throws ZException on
/// failure and Interruption when the user interrupts.
[[nodiscard]] RenderResult renderOffline(const RenderRequest& request, PluginInstance& plugin,
                                         const ProgressCallback& progress);

/// Writes a picture of the window with the state and settings asked for, without rendering a sound.
/// Returns notes about options that had no effect. Throws ZException on failure.
[[nodiscard]] std::vector<std::string> drawWindow(const RenderRequest& request,
                                                  PluginInstance& plugin);

}  // namespace orvane
