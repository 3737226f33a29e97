// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneFlankedGrain.h"
#include "kestrune/common/engine/KestruneGlide.h"
#include "kestrune/common/engine/KestruneGlottalAlignment.h"
#include "kestrune/common/engine/KestruneMarks.h"

#include <cstdint>

namespace orvane
{

class KestruneFineAnalysis;
class KestruneGrainQueue;
class KestruneStereoRing;
struct KestruneFineGeometry;

/// The sounding half of the fine tracking: places grains by the settled records. A voice is moved
/// in grains whose marks follow its cycles and stand behind its glottal pulses; all else comes out
/// as it went in.
class KestruneFineSynthesis
{
public:
    /// What is done to a voice.
    struct Shifts
    {
        float pitchFactor = 1.0f;
        float formantFactor = 1.0f;
        bool isCorrected = false;
    };

    /// [setup]
    void Allocate(const KestruneFineGeometry& geometry);
    /// As of KestruneGlide. [audio thread]
    void SetGlide(float seconds, float sampleRate, int blockSize) noexcept
    {
        mGlide.SetTime(seconds, sampleRate, blockSize);
    }
    /// Begins anew, without a voice and without correction. [audio thread]
    void Restart() noexcept;
    /// Sets the correction back to none. [audio thread]
    void RestartCorrection() noexcept { mGlide.Start(1.0f); }

    /// Where grains come from and go to.
    struct Rings
    {
        const KestruneStereoRing& input;
        KestruneStereoRing& output;
        KestruneGrainQueue& grains;  // that are placed and sound later
    };

    /// Places grains up to the stream position horizon. reference: as in
    /// KestruneStereoRing::ReadMono. [audio thread]
    void PlaceGrains(const KestruneFineAnalysis& analysis, Rings rings, KestruneMarks& marks,
                     std::int64_t horizon, Shifts shifts, std::int16_t reference) noexcept;

    /// Of the newest grain. [audio thread]
    [[nodiscard]] float CorrectionRatio() const noexcept { return mGlide.Ratio(); }
    /// In samples; 0 before the first grain. [audio thread]
    [[nodiscard]] float InputPeriod() const noexcept { return mInputPeriod; }
    /// Pitch of the output over that of the input. [audio thread]
    [[nodiscard]] float Ratio() const noexcept { return mRatio; }

private:
    /// What the next grain of a voice is.
    enum class Onset
    {
        kNone,     // there is no voice
        kAligned,  // the voice's first grain is due at the next mark
        kPast      // the voice sounds
    };

    void PlaceDryGrain(Rings rings, KestruneMarks& marks, double step) noexcept;
    void PlaceVoicedGrain(const KestruneFineAnalysis& analysis, Rings rings, KestruneMarks& marks,
                          Shifts shifts) noexcept;
    void Place(Rings rings, const KestruneMarks& marks, KestruneFlankedGrain::Flanks flanks,
               float formantFactor) noexcept;
    /// Moves the correction towards the note of the grain at the input mark.
    float Correct(const KestruneFineAnalysis& analysis, double inputMark, float period) noexcept;

    double mDryStep = 0.0;       // samples
    double mLongestFlank = 0.0;  // samples
    float mSampleRate = 0.0f;    // Hz
    KestruneGlottalAlignment mAlignment;
    KestruneGlide mGlide;
    Onset mOnset = Onset::kNone;
    double mRightFlank = 0.0;   // of the last grain of the voice, in samples
    float mInputPeriod = 0.0f;  // samples; 0 before the first grain
    float mRatio = 1.0f;
};

}  // namespace orvane
