// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/OfflineRender.h"
#include "tools/render/PitchReader.h"
#include "tools/render/PitchTrack.h"
#include "tools/render/SoundFile.h"

#include <cstdint>
#include <vector>

namespace orvane
{

class EventSchedule;
class WindowShot;

/// Feeds a sound from a reader through the plug-in to a writer and measures the pitch of both.
///
/// Silence is fed before the input and dropped from the output. A plug-in may need it: ours starts
/// dry and changes to the corrected path shortly after its first output, which would click in a
/// sound that begins at its first sample.
class RenderRun
{
public:
    /// All arguments live as long as the run; window may be null. The plug-in has been started with
    /// the settings. Throws ZException for a sample rate that cannot be analysed.
    RenderRun(const RenderRequest& request, const RenderSettings& settings, PluginInstance& plugin,
              EventSchedule& events, SoundReader& reader, SoundWriter& writer, WindowShot* window);

    /// Feeds the silence, the input, and then silence until the end of the input has come out.
    /// Calls progress now and then with the frames that were processed since its last call. Throws
    /// ZException and Interruption.
    void Run(const ProgressCallback& progress);

    /// Figures of the finished run: frames of the input, latency in frames, largest absolute sample
    /// of the output, pitches.
    [[nodiscard]] std::int64_t Frames() const { return mFrames; }
    [[nodiscard]] int Latency() const { return mLatency; }
    [[nodiscard]] float Peak() const { return mPeak; }
    [[nodiscard]] const std::vector<PitchPoint>& Points() const { return mTrack.Points(); }

private:
    void FeedLeadIn();
    [[nodiscard]] int ReadInput();
    void Process(int count);
    void WriteOutput(int count);
    void Write(int first, int last);
    void TrackInput(int count);
    void TrackOutput(int first, int count);
    void FinishTrack();

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
    std::int64_t mFrames = 0;    // of input that were read
    std::int64_t mPosition = 0;  // frame of the input at which the next block starts
    bool mHasWritten = false;
    float mPeak = 0.0f;
};

}  // namespace orvane
