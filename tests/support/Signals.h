// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"

namespace orvane
{

/// Test signals with full scale 1.0. They are the same on every run.

/// The sum of harmonics h = 1, 2, ... below limitHz with amplitudes 1 / h, scaled to a peak near
/// 0.5.
std::vector<float> harmonicTone(double pitchHz, double sampleRate, int samples,
                                double limitHz = 20000.0);
/// Seeded white noise, uniform in -amplitude .. amplitude.
std::vector<float> whiteNoise(float amplitude, int samples, std::uint32_t seed);

}  // namespace orvane
