// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZEnvelopeDetector.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <new>

namespace orvane
{

namespace
{

constexpr float kSilenceDecibels = -144.0f;

/// The square, or 0 when it is no normal number.
float squareOf(float sample) noexcept
{
    const float square = sample * sample;
    return square < std::numeric_limits<float>::min() ? 0.0f : square;
}

/// Infinity counts as the largest number; otherwise the level would stay infinite for ever.
float decibelsOf(float meanSquare) noexcept
{
    if (!(meanSquare > 0.0f))
        return kSilenceDecibels;
    return 10.0f * std::log10(std::min(meanSquare, std::numeric_limits<float>::max()));
}

/// The share of a step covered in n samples.
float overBlock(float step, std::uint32_t n) noexcept
{
    return 1.0f - std::pow(1.0f - step, static_cast<float>(n));
}

}  // namespace

std::unique_ptr<ZEnvelopeDetector> ZEnvelopeDetector::Create(bool)
{
    std::unique_ptr<ZEnvelopeDetector> detector(new (std::nothrow) ZEnvelopeDetector);
    if (!detector)
        throw ZException(ZException::kOutOfMemory, "Unable to allocate a ZEnvelopeDetector.");
    return detector;
}

ZEnvelopeDetector::ZEnvelopeDetector()
    : ZDSPObject("ZEnvelopeDetector")
{
}

float ZEnvelopeDetector::StepFor(float milliseconds) const noexcept
{
    if (milliseconds <= 0.0f)
        return 1.0f;
    const double samples = milliseconds * 0.001 * mSampleRate;
    // 1 - 0.25^(1 / samples), by expm1: the plain difference loses its digits when it is small.
    return static_cast<float>(-std::expm1(std::log(0.25) / samples));
}

void ZEnvelopeDetector::SetRiseTime(float milliseconds) noexcept
{
    mRiseTime = milliseconds;
    mRiseStep = StepFor(milliseconds);
    mDirty = true;
}

void ZEnvelopeDetector::SetFallTime(float milliseconds) noexcept
{
    mFallTime = milliseconds;
    mFallStep = StepFor(milliseconds);
    mDirty = true;
}

void ZEnvelopeDetector::SetSampleRate(float sampleRate) noexcept
{
    assert(sampleRate > 0.0f);
    mSampleRate = sampleRate;
    SetRiseTime(mRiseTime);
    SetFallTime(mFallTime);
}

float ZEnvelopeDetector::Process(const ZBuffer& input) noexcept
{
    return Process(std::span(input.Data(), input.Length()));
}

float ZEnvelopeDetector::Process(std::span<const float> input) noexcept
{
    if (input.empty())
        return mLevel;
    const auto samples = static_cast<std::uint32_t>(input.size());
    Hold(samples);
    float sum = 0.0f;
    float before = 0.0f;
    for (const float sample : input) {
        const float square = squareOf(sample);
        sum += square;
        if (square > mPeak) {
            mPeak = square;
            mHoldElapsed = 0.0f;
        }
        CountClip(square, before);
        before = square;
    }
    const float decibels = decibelsOf(sum / static_cast<float>(samples));
    UpdateBlockSteps(samples);
    mLevel += (decibels - mLevel) * (mLevel > decibels ? mFallBlock : mRiseBlock);
    return mLevel;
}

void ZEnvelopeDetector::ClearClips() noexcept
{
    mClipEvents = 0;
    mClipRun = 0;
    mLastClipRun = 0;
    mClippedSamples = 0;
}

void ZEnvelopeDetector::Hold(std::uint32_t samples) noexcept
{
    mHoldElapsed += static_cast<float>(samples) / mSampleRate;
    if (mHoldTime < mHoldElapsed)
        mPeak = 0.0f;
}

// A single sample at full scale may be the peak of a normalised recording; two in a row are
// clipped.
void ZEnvelopeDetector::CountClip(float square, float squareBefore) noexcept
{
    const bool clipped = square > 1.0f || (square == 1.0f && squareBefore >= 1.0f);
    if (clipped) {
        ++mClippedSamples;
        if (mClipRun++ == 0)
            ++mClipEvents;
    } else if (mClipRun > 0) {
        mLastClipRun = mClipRun;
        mClipRun = 0;
    }
}

void ZEnvelopeDetector::UpdateBlockSteps(std::uint32_t samples) noexcept
{
    if (!mDirty && samples == mLastBlockLength)
        return;
    mFallBlock = overBlock(mFallStep, samples);
    mRiseBlock = overBlock(mRiseStep, samples);
    mLastBlockLength = samples;
    mDirty = false;
}

}  // namespace orvane
