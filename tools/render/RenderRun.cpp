// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/RenderRun.h"

#include "tools/render/EventSchedule.h"
#include "tools/render/Interruption.h"
#include "tools/render/PluginInstance.h"
#include "tools/render/WindowShot.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

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

}  // namespace

RenderRun::RenderRun(const RenderRequest& request, const RenderSettings& settings,
                     PluginInstance& plugin, EventSchedule& events, SoundReader& reader,
                     SoundWriter& writer, WindowShot* window)
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
    assert(mBlock >= 1);
}

void RenderRun::Run(const ProgressCallback& progress)
{
    constexpr std::int64_t kReportEvery = 16384;  // frames
    FeedLeadIn();
    std::int64_t reported = 0;
    while (true) {
        throwIfInterrupted();
        const int count = ReadInput();
        if (count == 0)
            break;
        Process(count);
        TrackInput(count);
        WriteOutput(count);
        mPosition += count;
        if (mPosition - reported >= kReportEvery) {
            progress(mPosition - reported);
            reported = mPosition;
        }
    }
    if (mWindow)
        mWindow->Take();
    FinishTrack();
}

/// Feeds a latency of silence, rounded up to whole blocks of the engine, so that the first of those
/// in which there is sound starts with the sound.
void RenderRun::FeedLeadIn()
{
    const int hop = mInputPitch.Hop();
    mPosition = -static_cast<std::int64_t>((mLatency + hop - 1) / hop) * hop;
    mPlugin.MoveTo(mPosition);
    while (mPosition < 0) {
        throwIfInterrupted();
        const int count = static_cast<int>(std::min<std::int64_t>(-mPosition, mBlock));
        Process(count);
        mPosition += count;
    }
}

/// Fills the input with the next frames or, after the end, with silence. Returns how many frames of
/// it to process; 0 once the end of the input has come out.
int RenderRun::ReadInput()
{
    mFrames += mReader.Read(mInput);
    if (mFrames == 0)
        return 0;
    return static_cast<int>(std::min<std::int64_t>(mFrames + mLatency - mPosition, mBlock));
}

void RenderRun::Process(int count)
{
    for (int done = 0; done < count;) {
        const std::int64_t frame = mPosition + done;
        if (mWindow)
            mWindow->TakeIfDue(frame);
        mEvents.SendDue(mPlugin, frame);
        const int frames = mEvents.BlockFrames(frame, count - done);
        mPlugin.Process(mInput, mOutput, done, frames);
        done += frames;
    }
    // A change of latency after output was written can no longer be compensated.
    if (!mHasWritten)
        mLatency = mPlugin.Latency();
}

void RenderRun::WriteOutput(int count)
{
    const auto within = [this, count](std::int64_t frame) {
        return static_cast<int>(
            std::clamp<std::int64_t>(frame - mPosition, 0, std::int64_t{count}));
    };
    const int aligned = within(mLatency);
    const int first = mKeepsLatency ? 0 : aligned;
    const int last = within(mFrames + mLatency);
    TrackOutput(aligned, std::max(last - aligned, 0));
    if (first < last)
        Write(first, last);
}

void RenderRun::Write(int first, int last)
{
    mHasWritten = true;
    mWriter.Write(mOutput, first, last - first);
    for (const auto& channel : mOutput) {
        for (int i = first; i < last; ++i)
            mPeak = std::max(mPeak, std::fabs(channel[static_cast<std::size_t>(i)]));
    }
}

void RenderRun::TrackInput(int count)
{
    mTrack.Feed(mInput, count);
    mInputPitch.Feed(mInput, 0, count);
    mTrack.AddInput(mInputPitch.Readings());
}

/// Reads the output's pitch without the latency, so that both pitches are for the same frames.
void RenderRun::TrackOutput(int first, int count)
{
    mOutputPitch.Feed(mOutput, first, count);
    mTrack.AddOutput(mOutputPitch.Readings());
}

/// A reading follows its frame by a delay, so silence is fed to get the last ones.
void RenderRun::FinishTrack()
{
    mInput = silentBlock(mBlock);
    mOutput = silentBlock(mBlock);
    for (int missing = mOutputPitch.Delay(); missing > 0; missing -= mBlock) {
        TrackInput(std::min(missing, mBlock));
        TrackOutput(0, std::min(missing, mBlock));
    }
    mTrack.Finish(mFrames);
}

}  // namespace orvane
