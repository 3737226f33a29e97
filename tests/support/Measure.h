// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>

namespace orvane
{

/// Measurements for tests and figures. They do not use the engine's own methods.

/// 1200 log2(a / b).
double centsBetween(double a, double b);
/// The pitch of a steady periodic signal in Hz, from the normalised autocorrelation near several
/// periods. expectedHz must be within a semitone of the pitch.
double measurePitch(std::span<const float> signal, double sampleRate, double expectedHz);
/// The root mean square of signal - reference relative to that of reference, in dB.
double errorDecibels(std::span<const float> signal, std::span<const float> reference);
/// The semitones by which the spectral envelope of a steady voice has moved from before to after:
/// the shift on a log-frequency axis, within an octave each way, at which the levels of their
/// harmonics differ least between lowHz and highHz, apart from a constant gain.
double envelopeShift(std::span<const float> before, double beforeHz, std::span<const float> after,
                     double afterHz, double sampleRate, double lowHz, double highHz);

}  // namespace orvane
