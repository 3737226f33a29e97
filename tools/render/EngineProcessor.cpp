#include "tools/render/EngineProcessor.h"

#include "kestrune/common/KestruneScales.h"
#include "zlib/common/ZException.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

constexpr float kHopSeconds = 0.0116f;
constexpr float kCentsPerOctave = 1200.0f;

}  // namespace

EngineProcessor::EngineProcessor() = default;

EngineProcessor::~EngineProcessor() = default;

int EngineProcessor::HopAt(int sampleRate)
{
    return static_cast<int>(static_cast<float>(sampleRate) * kHopSeconds + 0.5f);
}

void EngineProcessor::Prepare(int sampleRate)
{
    mHop = HopAt(sampleRate);
    const auto rate = static_cast<float>(sampleRate);
    if (!KestruneGeometry::Supports(rate, mHop))
        throw ZException(-1,
                         fmt::format("a rate of {} Hz cannot be rendered: the engine takes 8000 "
                                     "to 768000 Hz; resample the file first",
                                     sampleRate));
    mEngine = std::make_unique<PsolaClass>();
    if (!mEngine->Initialize(rate, mHop))
        throw ZException(-1, fmt::format("not enough memory for the engine at {} Hz", sampleRate));

    const KestruneGeometry geometry = KestruneGeometry::For(rate, mHop);
    mPitchDelay = geometry.latency - geometry.firstStreamPos;
    mFill = 0;
    mFed = 0;
    mDelayAt = 0;
    for (std::size_t c = 0; c < kChannels; ++c) {
        mInput[c].assign(static_cast<std::size_t>(mHop), 0.0f);
        mOutput[c].assign(static_cast<std::size_t>(mHop), 0.0f);
        mDelayed[c].assign(static_cast<std::size_t>(mEngine->GetLatency()), 0.0f);
    }
    mReadings.clear();
    Apply();
}

void EngineProcessor::Set(std::string_view name, float value)
{
    mSettings.Set(settingNamed(name), value);
    if (mEngine)
        Apply();
}

void EngineProcessor::Apply()
{
    const auto octaves = [this](Setting s) { return mSettings.Value(s) / kCentsPerOctave; };
    const KestruneTones tones =
        tonesOf(mSettings.Index(Setting::kScale), mSettings.Index(Setting::kIntonation));
    const KestruneSourceRange range = sourceRange(mSettings.Index(Setting::kSourceType));
    mEngine->SetReferenceFrequency(
        referenceFrequency(mSettings.Index(Setting::kKey), mSettings.Value(Setting::kDetune)));
    mEngine->SetScaleTones(tones.values.data(), tones.count);
    mEngine->SetFrequencyRange(range.lowHz, range.highHz);
    mEngine->SetCorrectionTime(mSettings.Value(Setting::kPitchCorrectionTime));
    mEngine->SetPitchReference(
        static_cast<std::int16_t>(mSettings.Index(Setting::kPitchReference)));
    mEngine->SetPitchShift(octaves(Setting::kPitchShift));
    mEngine->SetFormantShift(octaves(Setting::kFormantShift));
    mEngine->SetTransposeEnabled(mSettings.IsOn(Setting::kTransposeOnOff));
    mEngine->SetCorrectionEnabled(mSettings.IsOn(Setting::kPitchCorrectionOnOff));
}

int EngineProcessor::Latency() const
{
    assert(mEngine);
    return mEngine->GetLatency() + mHop;
}

void EngineProcessor::Process(const float* const* inputs, float* const* outputs, int count)
{
    assert(mEngine);
    mReadings.clear();
    for (int done = 0; done < count;) {
        const int frames = std::min(count - done, mHop - mFill);
        for (std::size_t c = 0; c < kChannels; ++c) {
            std::copy_n(inputs[c] + done, frames, mInput[c].data() + mFill);
            std::copy_n(mOutput[c].data() + mFill, frames, outputs[c] + done);
        }
        done += frames;
        mFill += frames;
        if (mFill == mHop)
            ProcessHop();
    }
}

void EngineProcessor::ProcessHop()
{
    const float* const inputs[] = {mInput[0].data(), mInput[1].data()};
    float* const outputs[] = {mOutput[0].data(), mOutput[1].data()};
    mEngine->Process(inputs, outputs, mHop);
    mReadings.push_back({mFed - mPitchDelay, mEngine->GetInputPitch(), mEngine->GetOutputPitch()});

    const bool isDry = !mSettings.IsOn(Setting::kPitchCorrectionOnOff) &&
                       !mSettings.IsOn(Setting::kTransposeOnOff);
    if (isDry)
        Delay();
    mFed += mHop;
    mFill = 0;
}

void EngineProcessor::Delay()
{
    const std::size_t length = mDelayed[0].size();
    for (std::size_t i = 0; i < static_cast<std::size_t>(mHop); ++i) {
        for (std::size_t c = 0; c < kChannels; ++c)
            mOutput[c][i] = std::exchange(mDelayed[c][mDelayAt], mInput[c][i]);
        mDelayAt = mDelayAt + 1 == length ? 0 : mDelayAt + 1;
    }
}

}  // namespace orvane
