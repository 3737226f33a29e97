// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>

namespace orvane
{

/// Measurements for tests and figures, independent of the engine's own methods.

/// 1200 log2(a / b).
double centsBetween(double a, double b);
/// Pitch of a steady periodic signal, in Hz, from the normalised autocorrelation near several
/// periods of the expected pitch, which must be within a semitone of the truth.
double measurePitch(std::span<const float> signal, double sampleRate, double expectedHz);
/// Root mean square of signal - reference relative to that of reference, in dB.
double errorDecibels(std::span<const float> signal, std::span<const float> reference);
/// Semitones by which the spectral envelope of a steady voice has moved from before to after:
/// the shift on a log-frequency axis at which the levels of their harmonics agree best between
/// lowHz and highHz, gain apart. Searched within an octave each way.
double envelopeShift(std::span<const float> before, double beforeHz, std::span<const float> after,
                     double afterHz, double sampleRate, double lowHz, double highHz);

}  // namespace orvane
