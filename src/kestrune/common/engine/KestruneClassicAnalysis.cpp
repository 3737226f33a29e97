// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneClassicAnalysis.h"

#include "kestrune/common/engine/KestruneGeometry.h"
#include "kestrune/common/engine/KestruneStereoRing.h"

#include <algorithm>
#include <cassert>

namespace orvane
{

namespace
{

// The steps are: to load the frame, to measure it, the parts of the transform, to shape the
// spectrum, and the parts of the comb.
constexpr int kFirstTransformStep = 2;
constexpr int kShapeCost = 2;
constexpr int kCombCost = 8;

/// Blocks that a record must be ahead of the synthesis: four until it is repaired, one in which it
/// is made, and one that a block's marks reach into. The marks of voices below 70 Hz reach further.
constexpr int kLeastLeadBlocks = 6;

}  // namespace

void KestruneClassicAnalysis::Allocate(const KestruneGeometry& geometry, float sampleRate,
                                       int blockSize)
{
    mSampleRate = sampleRate;
    mBlockSize = blockSize;
    mFftSize = geometry.fftSize;
    mLead = geometry.lead;
    mSpectrum.Allocate(geometry, blockSize);
    mRecords.Allocate(geometry.recordCount);
    DropFrames();
}

void KestruneClassicAnalysis::SetRange(float lowHz, float highHz) noexcept
{
    assert(mFftSize > 0);
    while (mFrameWork > 0)
        Step();
    mLowest = lowHz;
    mHighest = highHz;
    const auto longestPeriod = static_cast<float>(static_cast<int>(mSampleRate / lowHz));
    mSpectrum.SetFrameLength(static_cast<int>(kWindowFactor * longestPeriod + 0.5f));
    mComb.SetRange(lowHz, highHz, SpectrumTop(), static_cast<float>(mFftSize) / mSampleRate);
    mFrameCost = 0;
    for (int step = 0; step < StepCount(); ++step)
        mFrameCost += CostOf(step);
    const int lead = mLead - mSpectrum.FrameLength() / 2;
    mMostBehind = std::clamp(lead / mBlockSize - kLeastLeadBlocks, 0, kReducedBlocks / 2);
    CountWork();
}

void KestruneClassicAnalysis::Reset() noexcept
{
    mComb.Clear();
    DropFrames();
}

void KestruneClassicAnalysis::DropFrames() noexcept
{
    mWaitingFrames = 0;
    mMayWait = 0;
    mFrameWork = 0;
    mWorkLeft = 0;
}

void KestruneClassicAnalysis::ClearRecords() noexcept
{
    assert(!IsBehind());
    const int periods =
        static_cast<int>(mSampleRate / mLowest) + static_cast<int>(mSampleRate / mHighest);
    mRecords.Fill(static_cast<float>(periods) * 0.5f);
}

int KestruneClassicAnalysis::StepCount() const noexcept
{
    return kFirstTransformStep + mSpectrum.PartCount() + 1 + mComb.PartCount();
}

int KestruneClassicAnalysis::CostOf(int step) const noexcept
{
    const int shapeStep = kFirstTransformStep + mSpectrum.PartCount();
    const int frame = mSpectrum.FrameLength();
    if (step == 0)
        return 1 + frame / mBlockSize;
    if (step < kFirstTransformStep)
        return 1 + 3 * frame / (4 * mBlockSize);
    if (step < shapeStep)
        return mSpectrum.CostOf(step - kFirstTransformStep);
    return step == shapeStep ? kShapeCost : kCombCost;
}

void KestruneClassicAnalysis::Begin(const KestruneStereoRing& input, std::int64_t end,
                                    std::int16_t reference, Pace pace) noexcept
{
    assert(WorkLeft() == 0 && mFftSize > 0);
    mInput = &input;
    mNewest = end;
    mReference = reference;
    ++mWaitingFrames;
    const int most = mMostBehind * mFrameCost;
    if (pace == Pace::kReduced)
        mMayWait = std::min(mMayWait + most / kReducedBlocks, most);
    else
        mMayWait = std::max(mMayWait - mFrameCost / 2, 0);
    CountWork();
}

void KestruneClassicAnalysis::CountWork() noexcept
{
    mNextCost = CostOf(mFrameWork > 0 ? mStep : 0);
    const int due = mFrameWork + mWaitingFrames * mFrameCost - mMayWait;
    // The next step waits with the rest if only a smaller part of it is due.
    const bool mayWait = mMayWait > 0 && 2 * due <= mNextCost;
    mWorkLeft = mayWait ? 0 : std::max(due, 0);
}

void KestruneClassicAnalysis::BeginFrame() noexcept
{
    assert(mWaitingFrames > 0);
    --mWaitingFrames;
    mEnd = mNewest - static_cast<std::int64_t>(mWaitingFrames) * mBlockSize;
    mStep = 0;
    mFrameWork = mFrameCost;
}

void KestruneClassicAnalysis::Step() noexcept
{
    assert(IsBehind() && mInput);
    if (mFrameWork == 0)
        BeginFrame();
    mFrameWork -= mNextCost;
    Do(mStep++);
    CountWork();
}

void KestruneClassicAnalysis::Do(int step) noexcept
{
    if (step == 0)
        return mSpectrum.LoadFrame(*mInput, mInput->Index(mEnd - mSpectrum.FrameLength()),
                                   mReference);
    if (step < kFirstTransformStep) {
        mSpectrum.MeasureFrame();
        mGate = mSpectrum.LevelGate();
        return;
    }
    const int transformPart = step - kFirstTransformStep;
    const int combPart = transformPart - mSpectrum.PartCount() - 1;
    if (combPart < 0)
        return AnalyseSpectrum(transformPart);
    mComb.FindInPart(combPart, mSpectrum.Values(), mVoicing);
    if (mFrameWork == 0)
        AddRecord();
}

void KestruneClassicAnalysis::AnalyseSpectrum(int part) noexcept
{
    // What is too quiet for a voice needs no spectrum: without voicing the comb's sums stay.
    mVoicing = 0.0f;
    if (mGate == 0.0f)
        return;
    if (part < mSpectrum.PartCount())
        return mSpectrum.TransformPart(part);
    mVoicing = mSpectrum.NormalizeBand(Band()) * mGate;
}

float KestruneClassicAnalysis::SpectrumTop() const noexcept
{
    return mHighest * kSpectrumTopFactor;
}

KestruneSpectrum::Band KestruneClassicAnalysis::Band() const noexcept
{
    const auto bin = [this](float frequency) {
        const float position = static_cast<float>(mFftSize) * frequency / mSampleRate;
        return static_cast<int>(position + 0.5f);
    };
    return {bin(mLowest), bin(SpectrumTop())};
}

void KestruneClassicAnalysis::AddRecord() noexcept
{
    KestruneAnalysisRecord record;
    record.time = static_cast<double>(mEnd - mBlockSize) - mSpectrum.FrameLength() * 0.5;
    record.period = mSampleRate / mComb.Found();
    record.strength = mVoicing;
    record.hold = mVoicing;
    mRecords.Append(record);
    mRecords.Repair();
}

}  // namespace orvane
