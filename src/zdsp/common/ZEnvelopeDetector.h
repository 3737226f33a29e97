// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZDSPObject.h"

#include <cstdint>
#include <memory>
#include <span>

namespace orvane
{

class ZBuffer;

/// Follows the level of a signal in dB, block by block, with a rise time and a fall time. Holds the
/// peak of the last three seconds and counts clipped samples.
class ZEnvelopeDetector : public ZDSPObject
{
public:
    /// A detector. forceGeneric has no effect, because there is one form for all processors. Throws
    /// ZException kOutOfMemory when there is no memory. [setup]
    [[nodiscard]] static std::unique_ptr<ZEnvelopeDetector> Create(bool forceGeneric);

    /// The time in which the level covers three quarters of a step upwards; 0 or less follows at
    /// once. The level does not rise before a time is set. [audio thread]
    void SetRiseTime(float milliseconds) noexcept;
    /// The same downwards. [audio thread]
    void SetFallTime(float milliseconds) noexcept;
    /// In Hz, above 0. Both times keep their values. [audio thread]
    void SetSampleRate(float sampleRate) noexcept;

    /// Reads the next block and returns the new level in dB. [audio thread]
    virtual float Process(const ZBuffer& input) noexcept;
    /// The same for a span of samples. An empty span changes nothing. [audio thread]
    float Process(std::span<const float> input) noexcept;
    /// Sets the counts of clips to 0. [audio thread]
    void ClearClips() noexcept;

    /// In dB; -144 at first and for silence.
    [[nodiscard]] float Level() const noexcept { return mLevel; }
    /// The largest squared sample of the last three seconds.
    [[nodiscard]] float Peak() const noexcept { return mPeak; }
    /// The number of clipped samples: those above full scale, and those at full scale after a
    /// sample at or above full scale.
    [[nodiscard]] std::uint32_t ClippedSamples() const noexcept { return mClippedSamples; }
    /// The number of runs of clipped samples.
    [[nodiscard]] std::uint32_t ClipEvents() const noexcept { return mClipEvents; }
    /// The length of the last run that has ended.
    [[nodiscard]] std::uint32_t LastClipRun() const noexcept { return mLastClipRun; }

private:
    ZEnvelopeDetector();
    [[nodiscard]] float StepFor(float milliseconds) const noexcept;
    void Hold(std::uint32_t samples) noexcept;
    void CountClip(float square, float squareBefore) noexcept;
    void UpdateBlockSteps(std::uint32_t samples) noexcept;

    float mSampleRate = 44100.0f;
    float mRiseTime = 1.0f;  // milliseconds
    float mFallTime = 1.0f;
    float mRiseStep = 0.0f;  // share of a step covered in one sample
    float mFallStep = 0.0f;
    float mRiseBlock = 0.0f;  // share covered in a block of mLastBlockLength samples
    float mFallBlock = 0.0f;
    bool mDirty = false;  // the two shares for a block are out of date
    float mLevel = -144.0f;
    float mPeak = 0.0f;
    float mHoldTime = 3.0f;     // seconds
    float mHoldElapsed = 0.0f;  // seconds since the peak was set
    std::uint32_t mClipEvents = 0;
    std::uint32_t mClipRun = 0;
    std::uint32_t mLastClipRun = 0;
    std::uint32_t mClippedSamples = 0;
    std::uint32_t mLastBlockLength = 0;
};

}  // namespace orvane
