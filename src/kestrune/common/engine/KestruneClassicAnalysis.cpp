// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneClassicAnalysis.h"

#include "kestrune/common/engine/KestruneGeometry.h"
#include "kestrune/common/engine/KestruneStereoRing.h"

#include <cassert>

namespace orvane
{

namespace
{

// The steps are: to load the frame, to measure it, the parts of the transform, to shape the
// spectrum, and the parts of the comb.
constexpr int kFirstTransformStep = 2;
constexpr int kShapeCost = 4;
constexpr int kCombCost = 8;

}  // namespace

void KestruneClassicAnalysis::Allocate(const KestruneGeometry& geometry, float sampleRate,
                                       int blockSize)
{
    mSampleRate = sampleRate;
    mBlockSize = blockSize;
    mFftSize = geometry.fftSize;
    mSpectrum.Allocate(geometry, blockSize);
    mRecords.Allocate(geometry.recordCount);
    mWorkLeft = 0;
}

void KestruneClassicAnalysis::SetRange(float lowHz, float highHz) noexcept
{
    assert(mWorkLeft == 0 && mFftSize > 0);
    mLowest = lowHz;
    mHighest = highHz;
    const auto longestPeriod = static_cast<float>(static_cast<int>(mSampleRate / lowHz));
    mSpectrum.SetFrameLength(static_cast<int>(kWindowFactor * longestPeriod + 0.5f));
    mComb.SetRange(lowHz, highHz, SpectrumTop(), static_cast<float>(mFftSize) / mSampleRate);
}

void KestruneClassicAnalysis::Reset() noexcept
{
    assert(mWorkLeft == 0);
    mComb.Clear();
}

void KestruneClassicAnalysis::ClearRecords() noexcept
{
    assert(mWorkLeft == 0);
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
    if (step < kFirstTransformStep)
        return 1 + mSpectrum.FrameLength() / mBlockSize;
    if (step < shapeStep)
        return mSpectrum.CostOf(step - kFirstTransformStep);
    return step == shapeStep ? kShapeCost : kCombCost;
}

void KestruneClassicAnalysis::Begin(const KestruneStereoRing& input, std::int64_t end,
                                    std::int16_t reference) noexcept
{
    assert(mWorkLeft == 0 && mFftSize > 0);
    mInput = &input;
    mEnd = end;
    mReference = reference;
    mStep = 0;
    for (int step = 0; step < StepCount(); ++step)
        mWorkLeft += CostOf(step);
}

void KestruneClassicAnalysis::Step() noexcept
{
    assert(mWorkLeft > 0 && mInput);
    const int step = mStep++;
    mWorkLeft -= CostOf(step);
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
    if (mWorkLeft == 0)
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
