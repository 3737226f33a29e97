// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/OfflineRender.h"

#include "tools/render/EventSchedule.h"
#include "tools/render/Failure.h"
#include "tools/render/Interruption.h"
#include "tools/render/PitchPlot.h"
#include "tools/render/PluginInstance.h"
#include "tools/render/PluginSettings.h"
#include "tools/render/RenderReport.h"
#include "tools/render/RenderRun.h"
#include "tools/render/ScaleGrid.h"
#include "tools/render/SoundFormats.h"
#include "tools/render/TargetFile.h"
#include "tools/render/WindowShot.h"

#include <chrono>
#include <initializer_list>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

namespace fs = std::filesystem;

bool isSameFile(const fs::path& a, const fs::path& b)
{
    if (isStandardStream(a) || isStandardStream(b))
        return false;
    std::error_code error;
    if (fs::equivalent(a, b, error))
        return true;
    return fs::weakly_canonical(a, error) == fs::weakly_canonical(b, error);
}

void requireOther(const fs::path& path, const std::vector<fs::path>& others)
{
    for (const fs::path& other : others) {
        if (!other.empty() && isSameFile(path, other))
            fail("{} is named twice: each file needs a name of its own", path.string());
    }
}

void requireDistinct(const RenderRequest& request)
{
    if (isSameFile(request.input, request.output))
        fail("{} is both input and output: name another output", request.output.string());
    std::vector<fs::path> others{request.input, request.state.loadChunk, request.state.preset,
                                 request.automation, request.midi};
    for (const fs::path& target : {request.output, request.plot, request.report, request.saveChunk,
                                   request.savePreset, request.window.file})
    {
        if (!target.empty())
            requireOther(target, others);
        others.push_back(target);
    }
}

/// The files beside the sound that a render writes; each is empty unless asked for.
struct ExtraFiles
{
    explicit ExtraFiles(const RenderRequest& request)
        : plot(targetFor(request.plot))
        , report(targetFor(request.report))
        , chunk(targetFor(request.saveChunk))
        , preset(targetFor(request.savePreset))
        , picture(targetFor(request.window.file))
    {
    }

    void Commit()
    {
        for (std::optional<TargetFile>* const file : {&plot, &report, &chunk, &preset, &picture}) {
            if (*file)
                (*file)->Commit();
        }
    }

    std::optional<TargetFile> plot;
    std::optional<TargetFile> report;
    std::optional<TargetFile> chunk;
    std::optional<TargetFile> preset;
    std::optional<TargetFile> picture;

private:
    static std::optional<TargetFile> targetFor(const fs::path& path)
    {
        return path.empty() ? std::optional<TargetFile>() : std::optional<TargetFile>(path);
    }
};

std::optional<WindowShot> windowShot(const WindowRequest& request, const PluginInstance& plugin,
                                     int rate)
{
    if (request.file.empty())
        return std::nullopt;
    constexpr std::int64_t kAtTheEnd = std::numeric_limits<std::int64_t>::max();
    return WindowShot(plugin, request.seconds ? frameAt(*request.seconds, rate) : kAtTheEnd,
                      request.scale);
}

EventSchedule scheduled(const RenderRequest& request, const PluginSettings& settings, int rate,
                        std::vector<std::string>& notes)
{
    std::vector<AutomationPoint> automation;
    std::vector<MidiEvent> messages;
    if (!request.automation.empty()) {
        automation = readAutomationFile(request.automation);
        if (automation.empty())
            notes.push_back(fmt::format("{} holds no automation", request.automation.string()));
    }
    if (!request.midi.empty()) {
        messages = readMidiFile(request.midi);
        if (messages.empty())
            notes.push_back(fmt::format("{} holds no messages", request.midi.string()));
    }
    return {automation, std::move(messages), settings, rate};
}

/// Sets the plug-in up as hosts do and starts it.
void prepare(PluginInstance& plugin, const PluginSettings& settings, int rate,
             const RenderRequest& request, std::vector<std::string>& notes)
{
    plugin.SetFormat(rate, request.blockFrames);
    const AppliedState applied = applyState(plugin, request.state);
    notes.insert(notes.end(), applied.notes.begin(), applied.notes.end());
    if (!request.midi.empty() && !applied.acceptsMidi)
        notes.emplace_back(
            "--midi has no effect: the plug-in's MIDI input is off; a preset with the "
            "element AcceptMIDI switches it on");
    settings.Apply(request.settings);
    plugin.Start();
}

void noteNamesOfPictures(const RenderRequest& request, std::vector<std::string>& notes)
{
    for (const fs::path& file : {request.plot, request.window.file}) {
        if (!file.empty() && !equalWithoutCase(file.extension().string(), ".png"))
            notes.push_back(fmt::format("{} is written as PNG, whatever its name", file.string()));
    }
}

/// Adds what was given but had no effect on this sound.
void noteUnused(const RenderRequest& request, RenderResult& result)
{
    if (request.window.seconds && *request.window.seconds > result.Seconds())
        result.notes.push_back(fmt::format("--window-at {} is past the end: the window is drawn at "
                                           "the end, {:.3f} s",
                                           *request.window.seconds, result.Seconds()));
    if (result.eventsLeft > 0)
        result.notes.push_back(fmt::format("{} points of automation or messages come after the end "
                                           "and were left out",
                                           result.eventsLeft));
    if (result.IsDry() && request.automation.empty() && request.AsksForChange())
        result.notes.emplace_back("the options change nothing: neither pitchCorrectionOnOff nor "
                                  "transposeOnOff is on");
}

/// Copies the figures of a run and measures distances from the scale in force.
void addFigures(RenderResult& result, const RenderRun& run)
{
    const ScaleGrid grid(result.settings, result.scale);
    result.frames = run.Frames();
    result.latency = run.Latency();
    result.peak = run.Peak();
    result.points = run.Points();
    result.before = distanceFromScale(result.points, grid, &PitchPoint::inputHz);
    result.after = distanceFromScale(result.points, grid, &PitchPoint::outputHz);
}

}  // namespace

bool RenderRequest::AsksForChange() const
{
    return settings.IsAnyAssigned() || !state.IsEmpty() || !midi.empty();
}

RenderResult renderOffline(const RenderRequest& request, PluginInstance& plugin,
                           const ProgressCallback& progress)
{
    const auto start = std::chrono::steady_clock::now();
    SoundReader reader(request.input);
    const int rate = reader.Format().rate;
    requireDistinct(request);
    RenderResult result;
    result.format =
        request.format.empty() ? reader.Format() : parseFormat(request.format, reader.Format());
    requireFittingName(request.output, result.format);
    result.plugin = plugin.Name();
    result.interface = plugin.Format();
    const PluginSettings settings(plugin);
    EventSchedule events = scheduled(request, settings, rate, result.notes);
    prepare(plugin, settings, rate, request, result.notes);
    result.program = plugin.ProgramName(plugin.Program());
    result.settings = settings.Current();
    result.scale = settings.Scale();
    noteNamesOfPictures(request, result.notes);

    TargetFile output(request.output);
    ExtraFiles files(request);
    std::optional<WindowShot> window = windowShot(request.window, plugin, rate);
    if (files.chunk)
        writeBankChunk(plugin, files.chunk->TemporaryPath(), files.chunk->Name());
    if (files.preset)
        writePreset(plugin, files.preset->TemporaryPath(), files.preset->Name());
    SoundWriter writer(output.TemporaryPath(), output.Name(), result.format, reader);
    RenderRun run(request, result.settings, plugin, events, reader, writer,
                  window ? &*window : nullptr);
    run.Run(progress);
    writer.Close();

    addFigures(result, run);
    result.latencyMoved = plugin.Latency() != run.Latency();
    result.eventsLeft = events.Left();
    result.badSamples = reader.BadSamples();
    noteUnused(request, result);
    result.runSeconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    if (files.plot)
        writePitchPlot(files.plot->TemporaryPath(), files.plot->Name(), request, result);
    if (files.report)
        writeJsonReport(files.report->TemporaryPath(), files.report->Name(), request, result);
    if (files.picture)
        window->Write(files.picture->TemporaryPath(), files.picture->Name());
    throwIfInterrupted();
    output.Commit();
    files.Commit();
    return result;
}

std::vector<std::string> drawWindow(const RenderRequest& request, PluginInstance& plugin)
{
    constexpr int kRate = 44100;
    std::vector<std::string> notes;
    noteNamesOfPictures(request, notes);
    prepare(plugin, PluginSettings(plugin), kRate, request, notes);
    TargetFile picture(request.window.file);
    WindowShot window(plugin, 0, request.window.scale);
    window.Take();
    window.Write(picture.TemporaryPath(), picture.Name());
    picture.Commit();
    return notes;
}

}  // namespace orvane
