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
// Of ProcessStereo itself, in the units of KestruneClassicAnalysis.
constexpr int kWorkOfProcess = 14;

static_assert(KestruneClassicAnalysis::kReducedBlocks == KestruneFineAnalysis::kSettlingBlocks);

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
    CatchUp();
    mCorrection.SetReferenceFrequency(hz);
    mFineAnalysis.Notes().SetReferenceFrequency(hz);
}

void PsolaClass::SetScaleTones(const float* tones, int count) noexcept
{
    CatchUp();
    mCorrection.SetTones(tones, count);
    mFineAnalysis.Notes().SetTones(tones, count);
}

void PsolaClass::SetIgnoredNotes(ZBuffer* buffer) noexcept
{
    CatchUp();
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
    if (!IsAllocated())
        return;
    CatchUp();
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
    CatchUp();
    mWantedTracking = tracking;
    mSettlingBlocks = KestruneFineAnalysis::kSettlingBlocks;
    // Back before the other one was settled: this one has listened all the time.
    if (tracking == mTracking || !IsAllocated())
        return;
    if (tracking == KestruneTracking::kFine)
        return mFineAnalysis.Restart(Head());
    mClassicAnalysis.Reset();
    mClassicAnalysis.ClearRecords();
    mCorrection.Restart();
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
    CatchUp();  // with the memory that the work belongs to
    mGeometry = {};
    if (!KestruneGeometry::Supports(mSampleRate, mBlockSize))
        return false;
    const KestruneGeometry geometry = KestruneGeometry::For(mSampleRate, mBlockSize);
    try {
        mInputRing.Allocate(geometry.inputRingLength);
        mOutputRing.Allocate(geometry.outputRingLength);
        mGrains.Allocate(geometry, mBlockSize);
        mClassicAnalysis.Allocate(geometry, mSampleRate, mBlockSize);
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
    mClassicAnalysis.ClearRecords();
    // Nothing has sounded yet that the wanted tracking would have to go on from.
    mTracking = mWantedTracking;
    mFineAnalysis.Restart(Head());
    mFineSynthesis.Restart();
    return true;
}

std::int64_t PsolaClass::Head() const noexcept
{
    return mStreamPos + mGeometry.lead;
}

void PsolaClass::UpdateGlide() noexcept
{
    mCorrection.SetGlide(mCorrectionTime, mSampleRate, mBlockSize);
    mFineSynthesis.SetGlide(mCorrectionTime, mSampleRate, mBlockSize);
}

void PsolaClass::UpdateRange() noexcept
{
    mClassicAnalysis.SetRange(mMinFrequency, mMaxFrequency);
    mFineAnalysis.SetRange(mMinFrequency, mMaxFrequency);
}

void PsolaClass::Reset() noexcept
{
    CatchUp();
    mInputRing.Clear();
    mOutputRing.Clear();
    mClassicAnalysis.Reset();
    mCorrection.Restart();
    mInputPitch = (mMinFrequency + mMaxFrequency) * 0.5f;
    mOutputPitch = mInputPitch;
    if (IsAllocated())
        mFineAnalysis.Restart(Head());
    mFineSynthesis.Restart();
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
    CatchUp();
    mInputRing.Write(inputs, mInputWritePos, count);
    mInputWritePos = (mInputWritePos + count) % mInputRing.Length();
    AnalyzeFrame();
    SynthesizeStereo();
    // All but the longest grains begin later than what is taken now.
    const std::int64_t taken = mStreamPos - mGeometry.firstMark;
    while (mGrains.Count() > 0 && mGrains.Begin() < taken)
        mGrains.SoundNext(mInputRing, mOutputRing);
    mOutputRing.Take(outputs, mOutputReadPos, count);
    mOutputReadPos = (mOutputReadPos + count) % mOutputRing.Length();
    mStreamPos += count;
    mBlockWork = WorkLeft();
}

int PsolaClass::WorkLeft() const noexcept
{
    return mGrains.WorkLeft() + mClassicAnalysis.WorkLeft() + mFineAnalysis.WorkLeft();
}

PsolaClass::Work PsolaClass::NextWork(int due) const noexcept
{
    if (mGrains.Count() > 0)
        return Work::kGrain;
    // While both listen, short steps of the fine analysis fill what a long one does not fit into.
    const bool isFineNext = mFineAnalysis.WorkLeft() > 0 &&
                            (mClassicAnalysis.WorkLeft() == 0 || mClassicAnalysis.NextCost() > due);
    return isFineNext ? Work::kFineStep : Work::kClassicStep;
}

int PsolaClass::CostOf(Work work) const noexcept
{
    if (work == Work::kGrain)
        return mGrains.NextCost();
    return work == Work::kFineStep ? mFineAnalysis.NextCost() : mClassicAnalysis.NextCost();
}

void PsolaClass::CatchUp(float share) noexcept
{
    assert(share >= 0.0f && share <= 1.0f);
    const int block = mBlockWork + kWorkOfProcess;
    const int left =
        std::max(static_cast<int>((1.0f - share) * static_cast<float>(block)) - kWorkOfProcess, 0);
    for (int due = WorkLeft() - left; due > 0; due = WorkLeft() - left) {
        const Work next = NextWork(due);
        // Done now if more than half of it is due; in the end all is.
        if (left > 0 && 2 * due <= CostOf(next))
            return;
        Do(next);
    }
}

void PsolaClass::Do(Work work) noexcept
{
    switch (work) {
    case Work::kGrain:
        return mGrains.SoundNext(mInputRing, mOutputRing);
    case Work::kClassicStep:
        return mClassicAnalysis.Step();
    case Work::kFineStep:
        return mFineAnalysis.Step();
    }
}

bool PsolaClass::Listens(KestruneTracking tracking) const noexcept
{
    return tracking == mTracking || tracking == mWantedTracking;
}

void PsolaClass::AnalyzeFrame() noexcept
{
    using Pace = KestruneClassicAnalysis::Pace;
    const std::int64_t end = Head() + mBlockSize;
    // While both listen, the classic records can wait; the fine ones cannot.
    const bool isSettling = mTracking != mWantedTracking;
    if (Listens(KestruneTracking::kClassic))
        mClassicAnalysis.Begin(mInputRing, end, mPitchReference,
                               isSettling ? Pace::kReduced : Pace::kFull);
    else if (mClassicAnalysis.IsBehind())
        mClassicAnalysis.Reset();
    if (Listens(KestruneTracking::kFine))
        mFineAnalysis.Begin(mInputRing, end, mPitchReference);
    if (isSettling && --mSettlingBlocks == 0)
        GoOver();
}

void PsolaClass::GoOver() noexcept
{
    mTracking = mWantedTracking;
    if (mTracking == KestruneTracking::kFine)
        mFineSynthesis.Restart();
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
    // A block behind the classic tracking, as the newest block has not been listened to.
    mFineSynthesis.PlaceGrains(mFineAnalysis, {mInputRing, mOutputRing, mGrains}, mMarks,
                               mStreamPos - mBlockSize, shifts, mPitchReference);
    if (mFineSynthesis.InputPeriod() == 0.0f)
        return;
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

        KestrunePlacedGrain grain;
        grain.inputMark = mMarks.input;
        grain.outputMark = mMarks.output;
        grain.formantFactor = formantFactor;
        grain.length = GrainLength(voice.period, ratio);
        mGrains.Place(grain, mInputRing, mOutputRing);
        const float step = RecordsFor(mMarks.output).PeriodAt(mMarks.output) / ratio;
        mMarks.output += step;
        mMarks.step = static_cast<double>(step);
    }
    // The next block starts with the input mark near the output mark.
    MoveInputMark();
}

PsolaClass::VoiceAtMark PsolaClass::MoveInputMark() noexcept
{
    float period = RecordsFor(mMarks.input).PeriodAt(mMarks.input);
    while (std::fabs(mMarks.input + period - mMarks.output) <
           std::fabs(mMarks.input - mMarks.output)) {
        mMarks.input += period;
        period = RecordsFor(mMarks.input).PeriodAt(mMarks.input);
    }
    return {period, RecordsFor(mMarks.input).HoldAt(mMarks.input)};
}

const KestruneRecordRing& PsolaClass::RecordsFor(double time) noexcept
{
    const KestruneRecordRing& records = mClassicAnalysis.Records();
    while (time > records.FinalUntil() && mClassicAnalysis.IsBehind())
        mClassicAnalysis.Step();
    return records;
}

int PsolaClass::GrainLength(float period, float ratio) noexcept
{
    assert(period > 0.0f && ratio > 0.0f);
    const int length = static_cast<int>(period * kGrainFactor);
    const float strength = RecordsFor(mMarks.output).StrengthAt(mMarks.output);
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
