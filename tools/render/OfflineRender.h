// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/PitchTrack.h"
#include "tools/render/PluginState.h"
#include "tools/render/RenderSettings.h"
#include "tools/render/SoundFile.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orvane
{

class PluginInstance;

/// A picture of the plug-in's window.
struct WindowRequest
{
    std::filesystem::path file;     // empty: none
    std::optional<double> seconds;  // of the input that have gone in; else all of it
    int scale = 1;                  // pixels of the picture for one of the window, each way
};

/// What the user asked for.
struct RenderRequest
{
    std::filesystem::path input;
    std::filesystem::path output;
    std::filesystem::path plot;    // empty: none
    std::filesystem::path report;  // empty: none
    WindowRequest window;
    StateRequest state;
    RenderSettings settings;           // which come after the state
    std::filesystem::path saveChunk;   // with state and settings in force; empty: none
    std::filesystem::path automation;  // values of settings by time; empty: none
    std::filesystem::path midi;        // a Standard MIDI File; empty: none
    int blockFrames = 512;             // frames fed at a time, 1 .. 65536
    bool keepsLatency = false;
};

/// What became of it.
struct RenderResult
{
    SoundFormat format;
    std::string plugin;          // its name
    RenderSettings settings;     // those in force
    std::int64_t frames = 0;     // of the input
    int latency = 0;             // frames
    bool latencyMoved = false;   // later, when it could not be compensated any more
    std::size_t eventsLeft = 0;  // automation and messages after the end
    int automationCalls = 0;     // in which the plug-in told of a parameter of its own
    double timesRealtime = 0.0;
    std::int64_t badSamples = 0;  // of the input, not finite and taken as 0
    float peak = 0.0f;            // of the output, full scale at 1.0
    ScaleDistance before;
    ScaleDistance after;
    std::vector<PitchPoint> points;

    [[nodiscard]] double Seconds() const { return static_cast<double>(frames) / format.rate; }
    [[nodiscard]] double LatencyMs() const { return 1000.0 * latency / format.rate; }
};

/// Renders the input to the output, with the picture, the report and the chunk asked for, all of
/// them or none.
/// The output has as many frames as the input, aligned with it; with keepsLatency it has the
/// plug-in's latency more, at its start. Throws ZException for what cannot be, Interruption where
/// the user breaks off.
[[nodiscard]] RenderResult renderOffline(const RenderRequest& request, PluginInstance& plugin);

/// Writes the picture of the window in the state and with the settings asked for, without any
/// sound. Throws ZException for what cannot be.
void drawWindow(const RenderRequest& request, PluginInstance& plugin);

}  // namespace orvane
