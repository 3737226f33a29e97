// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/PsolaClass.h"

#include "zlib/common/buffers/ZBuffer.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <new>

namespace orvane
{

namespace
{

constexpr float kMillisecond = 0.001f;
constexpr float kWeakStrength = 0.3f;
constexpr float kMostStretch = 2.0f;

/// The grain buffers are sized for these shifts, so every value is clamped.
float boundedOctaves(float octaves)
{
    return std::isnan(octaves) ? 0.0f : std::clamp(octaves, -1.0f, 1.0f);
}

}  // namespace

PsolaClass::PsolaClass()
{
    UpdateGlide();
}

PsolaClass::~PsolaClass() = default;

void PsolaClass::SetPitchShift(float octaves) noexcept
{
    mPitchShift = boundedOctaves(octaves);
}

void PsolaClass::SetFormantShift(float octaves) noexcept
{
    mFormantShift = boundedOctaves(octaves);
}

void PsolaClass::SetReferenceFrequency(float hz) noexcept
{
    mCorrection.SetReferenceFrequency(hz);
    mFineAnalysis.Notes().SetReferenceFrequency(hz);
}

void PsolaClass::SetScaleTones(const float* tones, int count) noexcept
{
    mCorrection.SetTones(tones, count);
    mFineAnalysis.Notes().SetTones(tones, count);
}

void PsolaClass::SetIgnoredNotes(ZBuffer* buffer) noexcept
{
    mCorrection.SetIgnoredNotes(buffer);
    mFineAnalysis.Notes().SetIgnoredNotes(buffer);
}

void PsolaClass::SetCorrectionTime(float ms) noexcept
{
    mCorrectionTime = ms > 0.0f ? ms * kMillisecond : 0.0f;
    UpdateGlide();
}

void PsolaClass::SetFrequencyRange(float minHz, float maxHz) noexcept
{
    mMinFrequency = std::clamp(minHz, kLowestMinFrequency, kHighestMinFrequency);
    mMaxFrequency = std::clamp(maxHz, kLowestMaxFrequency, kHighestMaxFrequency);
    mSpectrumTop = mMaxFrequency * kSpectrumTopFactor;
    if (IsAllocated())
        UpdateRange();
}

void PsolaClass::SetCorrectionEnabled(bool enabled) noexcept
{
    mCorrection.Restart();
    mFineSynthesis.RestartCorrection();
    mCorrectionEnabled = enabled;
}

void PsolaClass::SetPitchReference(std::int16_t reference) noexcept
{
    mPitchReference = reference;
}

void PsolaClass::SetTransposeEnabled(bool enabled) noexcept
{
    mTransposeEnabled = enabled;
}

void PsolaClass::SetTracking(KestruneTracking tracking) noexcept
{
    if (tracking == mWantedTracking)
        return;
    mWantedTracking = tracking;
    mSettlingBlocks = KestruneFineAnalysis::kSettlingBlocks;
    // Back before the other one was settled: this one has listened all the time.
    if (tracking == mTracking || !IsAllocated())
        return;
    if (tracking == KestruneTracking::kFine)
        mFineAnalysis.Restart(Head());
    else
        RestartClassic();
}

float PsolaClass::GetCorrectionCents() const noexcept
{
    const float ratio = mTracking == KestruneTracking::kFine ? mFineSynthesis.CorrectionRatio()
                                                             : mCorrection.Ratio();
    return 1200.0f * std::log10(ratio) / std::log10(2.0f);
}

float PsolaClass::GetInputPitch() const noexcept
{
    return mInputPitch;
}

float PsolaClass::GetOutputPitch() const noexcept
{
    return mOutputPitch;
}

int PsolaClass::GetLatency() const noexcept
{
    return mGeometry.latency;
}

bool PsolaClass::Initialize(float sampleRate, int blockSize)
{
    mSampleRate = sampleRate;
    mBlockSize = blockSize;
    UpdateGlide();
    return AllocateBuffers();
}

bool PsolaClass::SetSampleRate(float sampleRate)
{
    const bool isNew = sampleRate != mSampleRate;
    mSampleRate = sampleRate;
    UpdateGlide();
    return !isNew || AllocateBuffers();
}

bool PsolaClass::SetBlockSize(int blockSize)
{
    const bool isNew = blockSize != mBlockSize;
    mBlockSize = blockSize;
    UpdateGlide();
    return !isNew || AllocateBuffers();
}

bool PsolaClass::AllocateBuffers()
{
    mGeometry = {};
    if (!KestruneGeometry::Supports(mSampleRate, mBlockSize))
        return false;
    const KestruneGeometry geometry = KestruneGeometry::For(mSampleRate, mBlockSize);
    try {
        mInputRing.Allocate(geometry.inputRingLength);
        mOutputRing.Allocate(geometry.outputRingLength);
        mGrain.Allocate(geometry.grainCapacity, geometry.resampledCapacity);
        mSpectrum.Allocate(geometry);
        mRecords.Allocate(geometry.recordCount);
        mFineAnalysis.Allocate(geometry, mSampleRate, mBlockSize);
        mFineSynthesis.Allocate(mFineAnalysis.Geometry());
    } catch (const std::bad_alloc&) {
        return false;
    }
    mGeometry = geometry;
    mStreamPos = geometry.firstStreamPos;
    mInputWritePos = geometry.latency;
    mOutputReadPos = 0;
    mMarks = {static_cast<double>(geometry.firstMark), static_cast<double>(geometry.firstMark)};
    UpdateRange();
    mRecords.Fill(static_cast<float>(mLongestPeriod + mShortestPeriod) * 0.5f);
    // Nothing has sounded yet that the wanted tracking would have to go on from.
    mTracking = mWantedTracking;
    mFineAnalysis.Restart(Head());
    mFineSynthesis.Restart();
    return true;
}

std::int64_t PsolaClass::Head() const noexcept
{
    return mStreamPos + mGeometry.grainCapacity / 2 + kAnalysisLeadBlocks * mBlockSize;
}

void PsolaClass::UpdateGlide() noexcept
{
    mCorrection.SetGlide(mCorrectionTime, mSampleRate, mBlockSize);
    mFineSynthesis.SetGlide(mCorrectionTime, mSampleRate, mBlockSize);
}

void PsolaClass::UpdateRange() noexcept
{
    mShortestPeriod = static_cast<int>(mSampleRate / mMaxFrequency);
    mLongestPeriod = static_cast<int>(mSampleRate / mMinFrequency);
    mSpectrum.SetFrameLength(
        static_cast<int>(kWindowFactor * static_cast<float>(mLongestPeriod) + 0.5f));
    const float binsPerHz = static_cast<float>(mGeometry.fftSize) / mSampleRate;
    mComb.SetRange(mMinFrequency, mMaxFrequency, mSpectrumTop, binsPerHz);
    mFineAnalysis.SetRange(mMinFrequency, mMaxFrequency);
}

void PsolaClass::Reset() noexcept
{
    mInputRing.Clear();
    mOutputRing.Clear();
    mComb.Clear();
    mDetectedFrequency = (mMinFrequency + mMaxFrequency) * 0.5f;
    mVoicing = 1.0f;
    mCorrection.Restart();
    mInputPitch = mDetectedFrequency;
    mOutputPitch = mDetectedFrequency;
    if (IsAllocated())
        mFineAnalysis.Restart(Head());
    mFineSynthesis.Restart();
}

void PsolaClass::RestartClassic() noexcept
{
    mComb.Clear();
    mDetectedFrequency = (mMinFrequency + mMaxFrequency) * 0.5f;
    mRecords.Fill(static_cast<float>(mLongestPeriod + mShortestPeriod) * 0.5f);
    mCorrection.Restart();
}

void PsolaClass::Process(const float* const* inputs, float* const* outputs, int count) noexcept
{
    ProcessStereo(inputs, outputs, count);
}

void PsolaClass::ProcessStereo(const float* const* inputs, float* const* outputs,
                               int count) noexcept
{
    assert(IsAllocated() && count == mBlockSize);
    assert(inputs && outputs);
    mInputRing.Write(inputs, mInputWritePos, count);
    mInputWritePos = (mInputWritePos + count) % mInputRing.Length();
    AnalyzeFrame();
    SynthesizeStereo();
    mOutputRing.Take(outputs, mOutputReadPos, count);
    mOutputReadPos = (mOutputReadPos + count) % mOutputRing.Length();
    mStreamPos += count;
    mRecords.Advance();
    mFineAnalysis.Advance();
}

bool PsolaClass::Listens(KestruneTracking tracking) const noexcept
{
    return tracking == mTracking || tracking == mWantedTracking;
}

void PsolaClass::AnalyzeFrame() noexcept
{
    if (Listens(KestruneTracking::kClassic))
        ListenClassic();
    if (Listens(KestruneTracking::kFine))
        mFineAnalysis.Listen(mInputRing, Head() + mBlockSize, mPitchReference);
    if (mTracking != mWantedTracking && --mSettlingBlocks == 0)
        GoOver();
}

void PsolaClass::GoOver() noexcept
{
    mTracking = mWantedTracking;
    if (mTracking == KestruneTracking::kFine)
        mFineSynthesis.Restart();
}

void PsolaClass::ListenClassic() noexcept
{
    const int length = mSpectrum.FrameLength();
    mSpectrum.LoadFrame(mInputRing, mInputRing.Index(mInputWritePos - length), mPitchReference);
    mSpectrum.Transform();
    mVoicing = mSpectrum.NormalizeBand(AnalysedBand()) * mSpectrum.LevelGate();
    mDetectedFrequency = mComb.Find(mSpectrum.Values(), mVoicing);

    KestruneAnalysisRecord record;
    record.time = static_cast<double>(Head()) - length * 0.5;
    record.period = mSampleRate / mDetectedFrequency;
    record.strength = mVoicing;
    record.hold = mVoicing;
    mRecords.Write(record);
    mRecords.Repair();
}

KestruneSpectrum::Band PsolaClass::AnalysedBand() const noexcept
{
    const auto bin = [this](float frequency) {
        const float position = static_cast<float>(mGeometry.fftSize) * frequency / mSampleRate;
        return static_cast<int>(position + 0.5f);
    };
    return {bin(mMinFrequency), bin(mSpectrumTop)};
}

void PsolaClass::SynthesizeStereo() noexcept
{
    if (mTracking == KestruneTracking::kFine)
        PlaceFineGrains();
    else
        PlaceClassicGrains();
}

void PsolaClass::PlaceFineGrains() noexcept
{
    KestruneFineSynthesis::Shifts shifts;
    shifts.pitchFactor = mTransposeEnabled ? std::exp2(mPitchShift) : 1.0f;
    shifts.formantFactor = mTransposeEnabled ? std::exp2(mFormantShift) : 1.0f;
    shifts.isCorrected = mCorrectionEnabled;
    mFineSynthesis.PlaceGrains(mFineAnalysis, mInputRing, mOutputRing, mMarks, mStreamPos, shifts,
                               mPitchReference);
    mInputPitch = mSampleRate / mFineSynthesis.InputPeriod();
    mOutputPitch = mInputPitch * mFineSynthesis.Ratio();
}

void PsolaClass::PlaceClassicGrains() noexcept
{
    const float pitchFactor = mTransposeEnabled ? std::exp2(mPitchShift) : 1.0f;
    const float formantFactor = mTransposeEnabled ? std::exp2(mFormantShift) : 1.0f;
    while (static_cast<double>(mStreamPos) > mMarks.output) {
        const VoiceAtMark voice = MoveInputMark();
        const float frequency = 1.0f / (voice.period / mSampleRate);
        float ratio = pitchFactor;
        if (mCorrectionEnabled)
            ratio *= ComputeCorrectionRatio(frequency, voice.hold);
        mInputPitch = frequency;
        mOutputPitch = frequency * ratio;

        mGrain.Cut(mInputRing, mMarks.input, GrainLength(voice.period, ratio));
        mGrain.AddTo(mOutputRing, mMarks.output, formantFactor);
        const float step = mRecords.PeriodAt(mMarks.output) / ratio;
        mMarks.output += step;
        mMarks.step = static_cast<double>(step);
    }
    // The next block starts with the input mark near the output mark.
    MoveInputMark();
}

PsolaClass::VoiceAtMark PsolaClass::MoveInputMark() noexcept
{
    float period = mRecords.PeriodAt(mMarks.input);
    while (std::fabs(mMarks.input + period - mMarks.output) <
           std::fabs(mMarks.input - mMarks.output)) {
        mMarks.input += period;
        period = mRecords.PeriodAt(mMarks.input);
    }
    return {period, mRecords.HoldAt(mMarks.input)};
}

int PsolaClass::GrainLength(float period, float ratio) const noexcept
{
    assert(period > 0.0f && ratio > 0.0f);
    const int length = static_cast<int>(period * kGrainFactor);
    const float strength = mRecords.StrengthAt(mMarks.output);
    if (ratio >= 1.0f || strength > kWeakStrength)
        return length;
    // When marks are further apart than in the input, grains of two periods leave gaps, which are
    // audible in unvoiced sounds. Longer grains fill them.
    const float stretch = 1.0f + (1.0f - strength) * 0.5f * (1.0f / ratio - 1.0f);
    return static_cast<int>(static_cast<float>(length) * std::min(stretch, kMostStretch));
}

float PsolaClass::ComputeCorrectionRatio(float frequency, float hold) noexcept
{
    return mCorrection.Advance(frequency, hold);
}

}  // namespace orvane
