// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/singer/Song.h"

#include <array>
#include <vector>

namespace orvane
{

/// A resonator of unit gain at 0 Hz, the element of D. Klatt, "Software for a cascade/parallel
/// formant synthesizer", Journal of the Acoustical Society of America 67, 1980, equation 1.
class Resonator
{
public:
    /// Sets frequency and bandwidth in Hz; the state is kept.
    void set(double hz, double bandwidthHz, double sampleRate);
    /// Filters one sample.
    double next(double input);

private:
    double mGain = 1.0;
    double mFirst = 0.0;  // weights of the last two outputs
    double mSecond = 0.0;
    double mLast = 0.0;
    double mBeforeLast = 0.0;
};

constexpr std::size_t kMovingFormants = 5;
/// Frequencies in Hz of the formants that distinguish vowels.
using Formants = std::array<double, kMovingFormants>;

/// The formants of a sung vowel.
Formants formantsOf(Vowel vowel);
/// The formants of a murmur behind closed lips.
Formants murmurFormants();

/// The filter from glottis to lips: a cascade of five moving formants and, above them, the evenly
/// spaced resonances of a tube of that length, which keep the spectrum from falling too fast.
class VocalTract
{
public:
    explicit VocalTract(double sampleRate);

    /// Sets the formants; the lowest is kept above pitchHz: singers open the mouth as they go up
    /// (J. Sundberg, "Formant technique in a professional female singer", Acustica 32, 1975).
    void set(const Formants& formants, double pitchHz);
    /// Filters one sample.
    double next(double input);

private:
    double mSampleRate;
    std::array<Resonator, kMovingFormants> mMoving;
    std::vector<Resonator> mUpper;
};

}  // namespace orvane
