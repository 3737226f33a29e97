// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <functional>
#include <vector>

namespace orvane
{

/// A voice of harmonics with exactly known pitch and formants.
struct HarmonicVoice
{
    static constexpr std::size_t kFormants = 5;

    double rate = 44100.0;                                                      // Hz
    std::array<double, kFormants> formants{};                                   // Hz
    std::array<double, kFormants> bandwidths{80.0, 90.0, 120.0, 150.0, 200.0};  // Hz
    double fundamental = 1.0;  // factor of the amplitude of the first harmonic

    /// The gain of the formants at a frequency, in Hz.
    [[nodiscard]] double Envelope(double hz) const;
    /// Renders seconds of the pitch that pitchAt gives in Hz at a time in seconds; 0 is silence.
    /// The peak is near 0.3.
    [[nodiscard]] std::vector<float> Sing(double seconds,
                                          const std::function<double(double)>& pitchAt) const;
};

/// The formants in Hz of the vowels a, e, i, o, u of an adult man; a woman's lie 17 % higher.
/// Throws std::invalid_argument for another letter.
[[nodiscard]] HarmonicVoice maleVoice(char vowel);
[[nodiscard]] HarmonicVoice femaleVoice(char vowel);

}  // namespace orvane
