// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/singer/ControlTrack.h"
#include "tools/singer/Song.h"
#include "tools/singer/VocalTract.h"

#include <array>

namespace orvane
{

/// How a song is sung: the controls of the voice at each time, independent of the sample rate.
class Performance
{
public:
    /// The controls of the voice at one time.
    struct Moment
    {
        double pitchHz;
        double voicing;     // amplitude of the glottal pulses
        double effort;      // 0 soft .. 1 firm
        double aspiration;  // amplitude of the noise at the glottis, without that of the voicing
        double hiss;        // amplitude of the noise at the teeth
        Formants formants;
    };

    explicit Performance(const Song& song);

    /// The controls at a time, in seconds from the start of the song.
    [[nodiscard]] Moment at(double seconds) const;

private:
    void addPitch(const SungNote& note);
    void addVibrato(const SungNote& note);
    void addVoicing(const SungNote& note, bool endsPhrase);
    void addMouth(const SungNote& note);
    void addConsonantNoise(const SungNote& note);
    void addBreath(const SungNote& note);
    void moveMouth(double fromSeconds, double toSeconds, const Formants& formants);

    ControlTrack mCents;  // above A4
    ControlTrack mVibrato;
    ControlTrack mDrift;
    ControlTrack mVoicing;
    ControlTrack mShimmer;
    ControlTrack mAspiration;
    ControlTrack mHiss;
    std::array<ControlTrack, kMovingFormants> mFormants;
};

}  // namespace orvane
