// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <complex>
#include <vector>

namespace orvane
{

/// Harmonics h = 1 .. count of one period of the flow through the glottis, differentiated: the
/// model of G. Fant, J. Liljencrants and Q. Lin, "A four-parameter model of glottal flow",
/// STL-QPSR 4, 1985, with its parameters from the one shape rd as in G. Fant, "The LF-model
/// revisited", STL-QPSR 2-3, 1995. rd runs from 0.5, pressed, to 2.5, breathy. The closure is at
/// phase 0 and has the value -1; the pulse is 2 Re sum c[h - 1] exp(2 pi i h phase).
std::vector<std::complex<double>> glottalHarmonics(double rd, int count);

/// A train of glottal pulses at a variable pitch. It sums harmonics below a limit, so that there is
/// no aliasing. The effort blends two pulse shapes, soft and firm.
class GlottalSource
{
public:
    /// sampleRate in Hz; set() takes pitches from lowestHz up.
    GlottalSource(double sampleRate, double lowestHz);

    /// Sets pitch in Hz and effort in 0 .. 1 for the following samples.
    void set(double pitchHz, double effort);
    /// The next sample.
    double next();
    /// Phase in the period, in 0 .. 1; the closure is at 0.
    [[nodiscard]] double phase() const { return mPhase; }

private:
    double mSampleRate;
    double mLimitHz;  // harmonics fade out toward it
    std::vector<std::complex<double>> mSoft;
    std::vector<std::complex<double>> mFirm;
    std::vector<std::complex<double>> mBlend;  // for the current pitch and effort
    double mPhase = 0.0;
    double mIncrement = 0.0;  // of the phase for each sample
};

}  // namespace orvane
