// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/OfflineRender.h"

#include "tools/render/EventSchedule.h"
#include "tools/render/Failure.h"
#include "tools/render/Interruption.h"
#include "tools/render/PitchPlot.h"
#include "tools/render/PitchReader.h"
#include "tools/render/PluginInstance.h"
#include "tools/render/PluginSettings.h"
#include "tools/render/ProgressBar.h"
#include "tools/render/RenderReport.h"
#include "tools/render/ScaleGrid.h"
#include "tools/render/TargetFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
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
    for (const fs::path& target :
         {request.output, request.plot, request.report, request.saveChunk, request.window.file})
    {
        if (!target.empty())
            requireOther(target, others);
        others.push_back(target);
    }
}

std::optional<TargetFile> optionalTarget(const fs::path& path)
{
    return path.empty() ? std::optional<TargetFile>() : std::optional<TargetFile>(path);
}

StereoBlock silentBlock(int frames)
{
    StereoBlock block;
    for (auto& channel : block)
        channel.assign(static_cast<std::size_t>(frames), 0.0f);
    return block;
}

/// The range in which to look for the output's pitch: that of the voice, transposed.
KestruneSourceRange outputRange(const RenderSettings& settings)
{
    KestruneSourceRange range = sourceRange(settings.Index(Setting::kSourceType));
    if (!settings.IsOn(Setting::kTransposeOnOff))
        return range;
    const float ratio = std::exp2(settings.Value(Setting::kPitchShift) / 1200.0f);
    return {range.lowHz * ratio, range.highHz * ratio};
}

/// Feeds the sound from the reader through the plug-in to the writer and measures both pitches.
class RenderRun
{
public:
    RenderRun(const RenderRequest& request, const RenderSettings& settings, PluginInstance& plugin,
              EventSchedule& events, SoundReader& reader, SoundWriter& writer, WindowShot* window)
        : mPlugin(plugin)
        , mEvents(events)
        , mReader(reader)
        , mWriter(writer)
        , mWindow(window)
        , mBlock(request.blockFrames)
        , mKeepsLatency(request.keepsLatency)
        , mLatency(plugin.Latency())
        , mInputPitch(reader.Format().rate, sourceRange(settings.Index(Setting::kSourceType)),
                      settings.Index(Setting::kPitchReference))
        , mOutputPitch(reader.Format().rate, outputRange(settings),
                       settings.Index(Setting::kPitchReference))
        , mTrack(reader.Format().rate, mBlock, settings.Index(Setting::kPitchReference))
        , mInput(silentBlock(mBlock))
        , mOutput(silentBlock(mBlock))
    {
    }

    /// Feeds the whole input and then silence, until the end of the input has come out.
    void Run()
    {
        ProgressBar progress(mReader.ExpectedFrames() + mLatency);
        while (true) {
            throwIfInterrupted();
            mFrames += mReader.Read(mInput);
            const std::int64_t missing = mFrames == 0 ? 0 : mFrames + mLatency - mProduced;
            const int count = static_cast<int>(std::min<std::int64_t>(missing, mBlock));
            if (count == 0)
                break;
            Process(count);
            WriteWanted(count);
            progress.Show(mProduced);
        }
        if (mWindow)
            mWindow->Take();
        FinishTrack();
    }

    [[nodiscard]] std::int64_t Frames() const { return mFrames; }
    [[nodiscard]] int Latency() const { return mLatency; }
    [[nodiscard]] float Peak() const { return mPeak; }
    [[nodiscard]] const std::vector<PitchPoint>& Points() const { return mTrack.Points(); }

    [[nodiscard]] double TimesRealtime() const
    {
        const double seconds = std::chrono::duration<double>(mSpent).count();
        const double sound = static_cast<double>(mProduced) / mReader.Format().rate;
        return seconds > 0.0 ? sound / seconds : 0.0;
    }

private:
    void Process(int count)
    {
        const auto start = std::chrono::steady_clock::now();
        for (int done = 0; done < count;) {
            const std::int64_t frame = mProduced + done;
            if (mWindow)
                mWindow->TakeIfDue(frame);
            mEvents.SendDue(mPlugin, frame);
            const int frames = mEvents.BlockFrames(frame, count - done);
            mPlugin.Process(mInput, mOutput, done, frames);
            done += frames;
        }
        mSpent += std::chrono::steady_clock::now() - start;
        // A change of latency after output was written can no longer be compensated.
        if (!mHasWritten)
            mLatency = mPlugin.Latency();
        TrackInput(mInput, count);
    }

    void WriteWanted(int count)
    {
        const auto within = [this, count](std::int64_t frame) {
            return static_cast<int>(
                std::clamp<std::int64_t>(frame - mProduced, 0, std::int64_t{count}));
        };
        const int aligned = within(mLatency);
        const int first = mKeepsLatency ? 0 : aligned;
        const int last = within(mFrames + mLatency);
        mProduced += count;
        TrackOutput(mOutput, aligned, std::max(last - aligned, 0));
        if (first < last)
            Write(first, last);
    }

    void Write(int first, int last)
    {
        mHasWritten = true;
        mWriter.Write(mOutput, first, last - first);
        for (const auto& channel : mOutput) {
            for (int i = first; i < last; ++i)
                mPeak = std::max(mPeak, std::fabs(channel[static_cast<std::size_t>(i)]));
        }
    }

    void TrackInput(const StereoBlock& block, int count)
    {
        mTrack.Feed(block, count);
        mInputPitch.Feed(block, 0, count);
        mTrack.AddInput(mInputPitch.Readings());
    }

    /// Reads the output's pitch without the latency, so that both pitches are for the same frames.
    void TrackOutput(const StereoBlock& block, int first, int count)
    {
        mOutputPitch.Feed(block, first, count);
        mTrack.AddOutput(mOutputPitch.Readings());
    }

    /// A reading follows its frame by a delay, so silence is fed to get the last ones.
    void FinishTrack()
    {
        const StereoBlock silence = silentBlock(mBlock);
        for (int missing = mOutputPitch.Delay(); missing > 0; missing -= mBlock) {
            TrackInput(silence, std::min(missing, mBlock));
            TrackOutput(silence, 0, std::min(missing, mBlock));
        }
        mTrack.Finish(mFrames);
    }

    PluginInstance& mPlugin;
    EventSchedule& mEvents;
    SoundReader& mReader;
    SoundWriter& mWriter;
    WindowShot* mWindow;  // null for none
    int mBlock;
    bool mKeepsLatency;
    int mLatency;
    PitchReader mInputPitch;
    PitchReader mOutputPitch;
    PitchTrack mTrack;
    StereoBlock mInput;
    StereoBlock mOutput;
    std::int64_t mFrames = 0;    // of input
    std::int64_t mProduced = 0;  // by the plug-in
    bool mHasWritten = false;
    float mPeak = 0.0f;
    std::chrono::steady_clock::duration mSpent{};  // in the plug-in
};

std::optional<WindowShot> windowShot(const WindowRequest& request, const PluginInstance& plugin,
                                     int rate)
{
    if (request.file.empty())
        return std::nullopt;
    constexpr std::int64_t kAtTheEnd = std::numeric_limits<std::int64_t>::max();
    return WindowShot(plugin, request.seconds ? frameAt(*request.seconds, rate) : kAtTheEnd);
}

EventSchedule scheduled(const RenderRequest& request, const PluginSettings& settings, int rate)
{
    std::vector<AutomationPoint> automation;
    std::vector<MidiEvent> messages;
    if (!request.automation.empty())
        automation = readAutomationFile(request.automation);
    if (!request.midi.empty())
        messages = readMidiFile(request.midi);
    return {automation, std::move(messages), settings, rate};
}

/// Sets the plug-in up as hosts do and returns the settings in force.
RenderSettings prepare(PluginInstance& plugin, const PluginSettings& settings, int rate,
                       const RenderRequest& request)
{
    plugin.SetFormat(rate, request.blockFrames);
    applyState(plugin, request.state);
    settings.Apply(request.settings);
    plugin.Start();
    return settings.Current(request.settings);
}

/// Copies the figures of a run and measures distances from the scale in force.
void addFigures(RenderResult& result, const RenderRun& run)
{
    const ScaleGrid grid(result.settings);
    result.frames = run.Frames();
    result.latency = run.Latency();
    result.timesRealtime = run.TimesRealtime();
    result.peak = run.Peak();
    result.points = run.Points();
    result.before = distanceFromScale(result.points, grid, &PitchPoint::inputHz);
    result.after = distanceFromScale(result.points, grid, &PitchPoint::outputHz);
}

}  // namespace

RenderResult renderOffline(const RenderRequest& request, PluginInstance& plugin)
{
    SoundReader reader(request.input);
    requireDistinct(request);
    requireFittingName(request.output, reader.Format());
    RenderResult result;
    result.format = reader.Format();
    result.plugin = plugin.Name();
    const PluginSettings settings(plugin);
    EventSchedule events = scheduled(request, settings, reader.Format().rate);
    result.settings = prepare(plugin, settings, reader.Format().rate, request);

    TargetFile output(request.output);
    std::optional<TargetFile> plot = optionalTarget(request.plot);
    std::optional<TargetFile> report = optionalTarget(request.report);
    std::optional<TargetFile> chunk = optionalTarget(request.saveChunk);
    std::optional<TargetFile> picture = optionalTarget(request.window.file);
    std::optional<WindowShot> window = windowShot(request.window, plugin, reader.Format().rate);
    if (chunk)
        writeBankChunk(plugin, chunk->TemporaryPath(), chunk->Name());
    SoundWriter writer(output.TemporaryPath(), output.Name(), reader);
    RenderRun run(request, result.settings, plugin, events, reader, writer,
                  window ? &*window : nullptr);
    run.Run();
    writer.Close();

    addFigures(result, run);
    result.latencyMoved = plugin.Latency() != run.Latency();
    result.eventsLeft = events.Left();
    result.badSamples = reader.BadSamples();

    if (plot)
        writePitchPlot(plot->TemporaryPath(), plot->Name(), request, result);
    if (report)
        writeJsonReport(report->TemporaryPath(), report->Name(), request, result);
    if (picture)
        window->Write(picture->TemporaryPath(), picture->Name(), request.window.scale);
    throwIfInterrupted();
    output.Commit();
    for (std::optional<TargetFile>* const other : {&plot, &report, &chunk, &picture}) {
        if (*other)
            (*other)->Commit();
    }
    return result;
}

void drawWindow(const RenderRequest& request, PluginInstance& plugin)
{
    constexpr int kRate = 44100;
    prepare(plugin, PluginSettings(plugin), kRate, request);
    TargetFile picture(request.window.file);
    WindowShot window(plugin, 0);
    window.Take();
    window.Write(picture.TemporaryPath(), picture.Name(), request.window.scale);
    picture.Commit();
}

}  // namespace orvane
