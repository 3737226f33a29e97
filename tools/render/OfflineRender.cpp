#include "tools/render/OfflineRender.h"

#include "tools/render/Interruption.h"
#include "tools/render/PitchPlot.h"
#include "tools/render/ProgressBar.h"
#include "tools/render/RenderReport.h"
#include "tools/render/ScaleGrid.h"
#include "tools/render/TargetFile.h"
#include "tools/render/VoiceProcessor.h"
#include "zlib/common/ZException.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <system_error>

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

void requireDistinct(const RenderRequest& request)
{
    if (isSameFile(request.input, request.output))
        throw ZException(-1, fmt::format("{} is both input and output: name another output",
                                         request.output.string()));
    const auto requireOther = [](const fs::path& path, std::initializer_list<fs::path> others) {
        for (const fs::path& other : others) {
            if (!path.empty() && !other.empty() && isSameFile(path, other))
                throw ZException(-1,
                                 fmt::format("{} is named twice: each file needs a name of its own",
                                             path.string()));
        }
    };
    requireOther(request.plot, {request.input, request.output});
    requireOther(request.report, {request.input, request.output, request.plot});
}

std::optional<TargetFile> optionalTarget(const fs::path& path)
{
    return path.empty() ? std::optional<TargetFile>() : std::optional<TargetFile>(path);
}

/// One run from the reader through the processor to the writer.
class RenderRun
{
public:
    RenderRun(const RenderRequest& request, VoiceProcessor& processor, SoundReader& reader,
              SoundWriter& writer)
        : mProcessor(processor)
        , mReader(reader)
        , mWriter(writer)
        , mBlock(request.blockFrames)
        , mLatency(processor.Latency())
        , mSkipped(request.keepsLatency ? 0 : mLatency)
        , mTrack(reader.Format().rate, mBlock, request.settings.Index(Setting::kPitchReference))
    {
        for (StereoBlock* block : {&mInput, &mOutput}) {
            for (auto& channel : *block)
                channel.assign(static_cast<std::size_t>(mBlock), 0.0f);
        }
    }

    /// Feeds the whole input and silence after it until its end has come out.
    void Run()
    {
        ProgressBar progress(mReader.ExpectedFrames() + mLatency);
        while (true) {
            throwIfInterrupted();
            const int read = mReader.Read(mInput);
            mFrames += read;
            if (mFrames == 0 || (read == 0 && mProduced >= mFrames + mLatency))
                break;
            Process();
            WriteWanted();
            progress.Show(mProduced);
        }
        mTrack.Finish(mFrames);
    }

    [[nodiscard]] std::int64_t Frames() const { return mFrames; }
    [[nodiscard]] float Peak() const { return mPeak; }
    [[nodiscard]] const std::vector<PitchPoint>& Points() const { return mTrack.Points(); }

    [[nodiscard]] double TimesRealtime() const
    {
        const double seconds = std::chrono::duration<double>(mSpent).count();
        const double sound = static_cast<double>(mProduced) / mReader.Format().rate;
        return seconds > 0.0 ? sound / seconds : 0.0;
    }

private:
    void Process()
    {
        const float* const inputs[] = {mInput[0].data(), mInput[1].data()};
        float* const outputs[] = {mOutput[0].data(), mOutput[1].data()};
        const auto start = std::chrono::steady_clock::now();
        mProcessor.Process(inputs, outputs, mBlock);
        mSpent += std::chrono::steady_clock::now() - start;
        mTrack.Feed(mInput, mBlock);
        mTrack.Add(mProcessor.Readings());
    }

    void WriteWanted()
    {
        const auto within = [this](std::int64_t frame) {
            return static_cast<int>(
                std::clamp<std::int64_t>(frame - mProduced, 0, std::int64_t{mBlock}));
        };
        const int first = within(mSkipped);
        const int last = within(mFrames + mLatency);
        mProduced += mBlock;
        if (first >= last)
            return;
        mWriter.Write(mOutput, first, last - first);
        for (const auto& channel : mOutput) {
            for (int i = first; i < last; ++i)
                mPeak = std::max(mPeak, std::fabs(channel[static_cast<std::size_t>(i)]));
        }
    }

    VoiceProcessor& mProcessor;
    SoundReader& mReader;
    SoundWriter& mWriter;
    int mBlock;
    int mLatency;
    std::int64_t mSkipped;  // frames at the start that are not written
    PitchTrack mTrack;
    StereoBlock mInput;
    StereoBlock mOutput;
    std::int64_t mFrames = 0;    // read
    std::int64_t mProduced = 0;  // come out of the processor
    float mPeak = 0.0f;
    std::chrono::steady_clock::duration mSpent{};  // in the processor
};

void prepare(VoiceProcessor& processor, int rate, const RenderSettings& settings)
{
    processor.Prepare(rate);
    for (std::size_t i = 0; i < kSettingCount; ++i) {
        const auto setting = static_cast<Setting>(i);
        processor.Set(settingRule(setting).name, settings.Value(setting));
    }
}

}  // namespace

RenderResult renderOffline(const RenderRequest& request, VoiceProcessor& processor)
{
    SoundReader reader(request.input);
    requireDistinct(request);
    requireFittingName(request.output, reader.Format());
    prepare(processor, reader.Format().rate, request.settings);

    TargetFile output(request.output);
    std::optional<TargetFile> plot = optionalTarget(request.plot);
    std::optional<TargetFile> report = optionalTarget(request.report);
    SoundWriter writer(output.TemporaryPath(), output.Name(), reader);
    RenderRun run(request, processor, reader, writer);
    run.Run();
    writer.Close();

    const ScaleGrid grid(request.settings);
    RenderResult result;
    result.format = reader.Format();
    result.frames = run.Frames();
    result.latency = processor.Latency();
    result.timesRealtime = run.TimesRealtime();
    result.badSamples = reader.BadSamples();
    result.peak = run.Peak();
    result.points = run.Points();
    result.before = distanceFromScale(result.points, grid, &PitchPoint::inputHz);
    result.after = distanceFromScale(result.points, grid, &PitchPoint::outputHz);

    if (plot)
        writePitchPlot(plot->TemporaryPath(), plot->Name(), request, result);
    if (report)
        writeJsonReport(report->TemporaryPath(), report->Name(), request, result);
    throwIfInterrupted();
    output.Commit();
    if (plot)
        plot->Commit();
    if (report)
        report->Commit();
    return result;
}

}  // namespace orvane
