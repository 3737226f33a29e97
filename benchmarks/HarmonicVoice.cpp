// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/HarmonicVoice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <iterator>
#include <numbers>
#include <stdexcept>

namespace orvane
{

namespace
{

constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kHighestHz = 9000.0;
constexpr double kFemaleFormants = 1.17;
constexpr double kFadeSeconds = 0.008;

struct VowelFormants
{
    char letter;
    std::array<double, HarmonicVoice::kFormants> formants;  // Hz, of a man
};
constexpr VowelFormants kMaleVowels[] = {{'a', {730.0, 1090.0, 2440.0, 3400.0, 4500.0}},
                                         {'e', {530.0, 1840.0, 2480.0, 3400.0, 4500.0}},
                                         {'i', {270.0, 2290.0, 3010.0, 3600.0, 4500.0}},
                                         {'o', {570.0, 840.0, 2410.0, 3400.0, 4500.0}},
                                         {'u', {300.0, 870.0, 2240.0, 3300.0, 4500.0}}};

}  // namespace

double HarmonicVoice::Envelope(double hz) const
{
    double gain = 1.0;
    for (std::size_t i = 0; i < kFormants; ++i) {
        // A pair of poles of a resonator with unit gain at 0 Hz.
        const std::complex<double> pole(-0.5 * bandwidths[i], formants[i]);
        const std::complex<double> at(0.0, hz);
        gain *= std::norm(pole) / (std::abs(at - pole) * std::abs(at - std::conj(pole)));
    }
    return gain;
}

std::vector<float> HarmonicVoice::Sing(double seconds,
                                       const std::function<double(double)>& pitchAt) const
{
    const auto count = static_cast<std::size_t>(seconds * rate);
    std::vector<double> table(static_cast<std::size_t>(kHighestHz) + 2);
    for (std::size_t hz = 0; hz < table.size(); ++hz)
        table[hz] = Envelope(static_cast<double>(hz));
    std::vector<double> sound(count);
    double phase = 0.0;
    double level = 0.0;
    double pitch = 100.0;
    for (std::size_t i = 0; i < count; ++i) {
        const double wanted = pitchAt(static_cast<double>(i) / rate);
        if (wanted > 0.0)
            pitch = wanted;
        const double fade = 1.0 / (kFadeSeconds * rate);
        level = std::clamp(level + (wanted > 0.0 ? fade : -fade), 0.0, 1.0);
        phase += kTurn * pitch / rate;
        if (level == 0.0)
            continue;
        // All sines by turning one.
        const std::complex<double> turn = std::polar(1.0, phase);
        std::complex<double> harmonic = turn;
        double sum = 0.0;
        for (int h = 1; h * pitch < kHighestHz; ++h, harmonic *= turn) {
            const double amplitude = table[static_cast<std::size_t>(h * pitch)] / h;
            sum += (h == 1 ? fundamental : 1.0) * amplitude * harmonic.imag();
        }
        sound[i] = level * sum;
    }
    double peak = 1e-9;
    for (const double sample : sound)
        peak = std::max(peak, std::fabs(sample));
    std::vector<float> out(count);
    std::transform(sound.begin(), sound.end(), out.begin(),
                   [peak](double sample) { return static_cast<float>(0.3 * sample / peak); });
    return out;
}

HarmonicVoice maleVoice(char vowel)
{
    const auto* const found = std::ranges::find(kMaleVowels, vowel, &VowelFormants::letter);
    if (found == std::end(kMaleVowels))
        throw std::invalid_argument("a vowel is one of a, e, i, o, u");
    HarmonicVoice voice;
    voice.formants = found->formants;
    return voice;
}

HarmonicVoice femaleVoice(char vowel)
{
    HarmonicVoice voice = maleVoice(vowel);
    for (double& formant : voice.formants)
        formant *= kFemaleFormants;
    return voice;
}

}  // namespace orvane
