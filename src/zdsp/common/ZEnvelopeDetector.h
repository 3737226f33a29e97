// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZDSPObject.h"

#include <cstdint>
#include <memory>
#include <span>

namespace orvane
{

class ZBuffer;

/// Follows the level of a signal in dB, block by block, with a rise and a fall time, and keeps the
/// peak of the last seconds and a count of clipped samples.
class ZEnvelopeDetector : public ZDSPObject
{
public:
    /// There is one form for all processors, so forceGeneric changes nothing. Throws ZException
    /// code 2 when there is no memory. [setup]
    [[nodiscard]] static std::unique_ptr<ZEnvelopeDetector> Create(bool forceGeneric);

    /// Milliseconds in which three quarters of a step upwards are gone; 0 or less follows at once.
    /// Until it is set the level does not rise. [audio thread]
    void SetRiseTime(float milliseconds) noexcept;
    /// The same downwards. [audio thread]
    void SetFallTime(float milliseconds) noexcept;
    /// In Hz, above 0. Keeps both times. [audio thread]
    void SetSampleRate(float sampleRate) noexcept;

    /// Takes the next block and gives the new level in dB. [audio thread]
    virtual float Process(const ZBuffer& input) noexcept;
    /// The same for a block that is a part of a buffer; of no samples it leaves all as it is.
    /// [audio thread]
    float Process(std::span<const float> input) noexcept;
    /// Counts clips from 0 again. [audio thread]
    void ClearClips() noexcept;

    /// In dB; -144 at first and the level of silence.
    [[nodiscard]] float Level() const noexcept { return mLevel; }
    /// Largest squared sample of the last three seconds.
    [[nodiscard]] float Peak() const noexcept { return mPeak; }
    /// Clipped samples: above full scale, or at full scale behind one that is at least there.
    [[nodiscard]] std::uint32_t ClippedSamples() const noexcept { return mClippedSamples; }
    /// Runs of clipped samples.
    [[nodiscard]] std::uint32_t ClipEvents() const noexcept { return mClipEvents; }
    /// Length of the last run that has ended.
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
    float mRiseStep = 0.0f;  // share of the way in one sample
    float mFallStep = 0.0f;
    float mRiseBlock = 0.0f;  // share of the way in a block of mLastBlockLength
    float mFallBlock = 0.0f;
    bool mDirty = false;  // the block's shares are not those of the steps
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
