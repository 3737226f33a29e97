// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/VoiceSpectrum.h"

#include <cmath>
#include <complex>
#include <numbers>

namespace orvane
{

namespace
{

constexpr double kTopHz = 8000.0;
constexpr int kBands = 26;

double melOf(double hz)
{
    return 2595.0 * std::log10(1.0 + hz / 700.0);
}

/// Levels in dB of triangular bands that overlap by half, each of the density of power.
std::vector<double> melLevels(const VoiceSpectrum& voice)
{
    const double width = melOf(kTopHz) / (kBands + 1);
    std::vector<double> levels;
    for (int band = 1; band <= kBands; ++band) {
        double sum = 0.0;
        double weights = 0.0;
        // The envelope between harmonics is that of the straight line between their levels, so
        // that narrow bands do not depend on whether a harmonic falls into them.
        for (double mel = (band - 1) * width; mel < (band + 1) * width; mel += width / 20.0) {
            const double hz = 700.0 * (std::pow(10.0, mel / 2595.0) - 1.0);
            const double place = std::max(1.0, hz / voice.pitchHz);
            const auto below = std::min(static_cast<std::size_t>(place), voice.powers.size() - 1);
            const double share = std::min(1.0, place - static_cast<double>(below));
            const double level = (1.0 - share) * std::log(voice.powers[below - 1] + 1e-15) +
                                 share * std::log(voice.powers[below] + 1e-15);
            const double weight = 1.0 - std::fabs(mel / width - band);
            sum += weight * std::exp(level);
            weights += weight;
        }
        levels.push_back(10.0 * std::log10(sum / weights));
    }
    return levels;
}

}  // namespace

VoiceSpectrum::VoiceSpectrum(std::span<const float> signal, double sampleRate, double hz)
    : pitchHz(hz)
    , harmonicsToNoise(0.0)
{
    const std::size_t length = signal.size();
    std::vector<double> window(length);
    std::vector<double> rest(length);
    double weights = 0.0;
    for (std::size_t i = 0; i < length; ++i) {
        const double turn = 2.0 * std::numbers::pi * (static_cast<double>(i) + 0.5);
        window[i] = 0.5 - 0.5 * std::cos(turn / static_cast<double>(length));
        weights += window[i];
        rest[i] = static_cast<double>(signal[i]);
    }
    const auto weighed = [&] {
        double sum = 0.0;
        for (std::size_t i = 0; i < length; ++i)
            sum += window[i] * rest[i] * rest[i];
        return sum;
    };
    const double all = weighed();
    for (int h = 1; h * hz < 0.45 * sampleRate; ++h) {
        const std::complex<double> step =
            std::polar(1.0, 2.0 * std::numbers::pi * h * hz / sampleRate);
        std::complex<double> turn = 1.0;
        std::complex<double> amplitude;
        for (std::size_t i = 0; i < length; ++i, turn *= step)
            amplitude += window[i] * static_cast<double>(signal[i]) * std::conj(turn);
        amplitude *= 2.0 / weights;
        if (h * hz <= kTopHz)
            powers.push_back(std::norm(amplitude));
        turn = 1.0;
        for (std::size_t i = 0; i < length; ++i, turn *= step)
            rest[i] -= (amplitude * turn).real();
    }
    harmonicsToNoise = 10.0 * std::log10(all / (weighed() + 1e-15));
}

double melDistance(const VoiceSpectrum& a, const VoiceSpectrum& b)
{
    const std::vector<double> levelsA = melLevels(a);
    const std::vector<double> levelsB = melLevels(b);
    double sum = 0.0;
    double squares = 0.0;
    for (std::size_t i = 0; i < levelsA.size(); ++i) {
        const double difference = levelsA[i] - levelsB[i];
        sum += difference;
        squares += difference * difference;
    }
    const double mean = sum / kBands;
    return std::sqrt(std::max(0.0, squares / kBands - mean * mean));
}

}  // namespace orvane
