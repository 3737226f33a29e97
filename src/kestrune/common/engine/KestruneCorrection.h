// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

namespace orvane
{

class ZBuffer;

/// Decides the note that a voice should be on and glides a ratio towards the one that reaches it.
/// The nearest target is worked out afresh at every update; the glide is the only memory.
class KestruneCorrection
{
public:
    static constexpr int kMaxTones = 32;

    /// Frequency of the root in any octave, in Hz; 0 and below give 440. [audio thread]
    void SetReferenceFrequency(float hz) noexcept;
    /// Targets in semitones above the root, rising; at most kMaxTones are taken. [audio thread]
    void SetTones(const float* tones, int count) noexcept;
    /// Twelve flags by semitone above the root, 1 leaving that note alone; not owned. [audio
    /// thread]
    void SetIgnoredNotes(ZBuffer* buffer) noexcept { mIgnoredNotes = buffer; }
    /// Share of the error that an update leaves: a quarter after seconds, at one update a block.
    /// [audio thread]
    void SetGlide(float seconds, float sampleRate, int blockSize) noexcept;
    /// Back to no correction. [audio thread]
    void Restart() noexcept { mCorrectionRatio = 1.0f; }

    /// Moves the ratio for a voice at frequency, in Hz; with a hold of 0, which is no voice, it
    /// moves towards 1. Gives the new ratio. [audio thread]
    float Advance(float frequency, float hold) noexcept;

    [[nodiscard]] float Ratio() const noexcept { return mCorrectionRatio; }

private:
    [[nodiscard]] float NearestTarget(float semitones) const noexcept;
    [[nodiscard]] bool IsIgnored(float semitones) const noexcept;

    float mReferenceFrequency = 440.0f;
    std::array<float, kMaxTones> mScaleTones{2.0f, 4.0f, 5.0f, 7.0f, 9.0f, 11.0f};
    int mToneCount = 6;
    ZBuffer* mIgnoredNotes = nullptr;
    float mSmoothing = 0.0f;        // 0 follows at once
    float mCorrectionRatio = 1.0f;  // 1 is no change
};

}  // namespace orvane
