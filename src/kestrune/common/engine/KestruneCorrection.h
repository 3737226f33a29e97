// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneGlide.h"

#include <array>

namespace orvane
{

class ZBuffer;

/// Finds the note that a voice should be on, and moves a pitch ratio towards the one that brings
/// the voice there. Every update looks for the nearest note again; only the ratio is remembered.
class KestruneCorrection
{
public:
    static constexpr int kMaxTones = 32;
    static constexpr float kDefaultReferenceHz = 440.0f;

    /// Sets the frequency of the scale's root in any octave, in Hz; 0 and below mean 440.
    /// [audio thread]
    void SetReferenceFrequency(float hz) noexcept;
    /// Sets the target tones in semitones above the root, in rising order; tones beyond kMaxTones
    /// are ignored. tones may be null if count is 0. [audio thread]
    void SetTones(const float* tones, int count) noexcept;
    /// Sets twelve flags by semitone above the root; a note whose flag is 1 is not corrected. Null
    /// corrects every note. The buffer is not owned. [audio thread]
    void SetIgnoredNotes(ZBuffer* buffer) noexcept { mIgnoredNotes = buffer; }
    /// Sets the speed of the ratio: with one update a block a quarter of an error is left after
    /// seconds; 0 corrects at once. [audio thread]
    void SetGlide(float seconds, float sampleRate, int blockSize) noexcept
    {
        mGlide.SetTime(seconds, sampleRate, blockSize);
    }
    /// Sets the ratio back to 1, which is no correction. [audio thread]
    void Restart() noexcept { mGlide.Start(1.0f); }

    /// Updates the ratio for a voice at frequency, in Hz, and returns it. A hold of 0 means that
    /// there is no voice; then the ratio moves towards 1. [audio thread]
    float Advance(float frequency, float hold) noexcept;

    /// The ratio of the last update. [audio thread]
    [[nodiscard]] float Ratio() const noexcept { return mGlide.Ratio(); }

private:
    [[nodiscard]] float NearestTarget(float semitones) const noexcept;
    [[nodiscard]] bool IsIgnored(float semitones) const noexcept;

    float mReferenceFrequency = kDefaultReferenceHz;
    std::array<float, kMaxTones> mScaleTones{2.0f, 4.0f, 5.0f, 7.0f, 9.0f, 11.0f};
    int mToneCount = 6;
    ZBuffer* mIgnoredNotes = nullptr;
    KestruneGlide mGlide;
};

}  // namespace orvane
