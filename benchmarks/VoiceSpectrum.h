// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

namespace orvane
{

/// What a steady voice consists of: harmonics of a pitch, and the rest.
struct VoiceSpectrum
{
    /// The pitch in Hz must be exact to a cent. The whole signal is looked at, through a Hann
    /// window.
    VoiceSpectrum(std::span<const float> signal, double sampleRate, double pitchHz);

    double pitchHz;
    std::vector<double> powers;  // of the harmonics from the first on, up to 8 kHz
    double harmonicsToNoise;     // ratio of the harmonics' power to that of the rest, in dB
};

/// Distance of two spectral envelopes in dB: the root mean square, over 26 bands of equal width in
/// mel up to 8 kHz, of the differences of their levels, apart from a constant gain.
[[nodiscard]] double melDistance(const VoiceSpectrum& a, const VoiceSpectrum& b);

}  // namespace orvane
