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
/// The root mean square of signal - reference relative to that of reference, in dB; both have the
/// same length.
double errorDecibels(std::span<const float> signal, std::span<const float> reference);
/// The loudest sample of what lies above a frequency, relative to the loudest of all, in dB: how
/// loud the clicks are in a sound whose own partials lie below.
double clickDecibels(std::span<const float> signal, double sampleRate, double aboveHz = 7000.0);

}  // namespace orvane
