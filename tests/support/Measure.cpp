// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Measure.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <vector>

namespace orvane
{

namespace
{

double normalisedCorrelation(std::span<const float> signal, std::size_t lag)
{
    double product = 0.0;
    double energy = 0.0;
    for (std::size_t i = 0; i + lag < signal.size(); ++i) {
        const double a = signal[i];
        const double b = signal[i + lag];
        product += a * b;
        energy += a * a + b * b;
    }
    return energy > 0.0 ? 2.0 * product / energy : 0.0;
}

/// The lag of the highest correlation near a lag, interpolated by a parabola.
double peakLag(std::span<const float> signal, double nearLag, double reach)
{
    const auto first = static_cast<std::size_t>(std::max(2.0, std::floor(nearLag - reach)));
    const auto last = static_cast<std::size_t>(std::ceil(nearLag + reach));
    std::size_t best = first;
    double bestValue = -2.0;
    for (std::size_t lag = first; lag <= last; ++lag) {
        const double value = normalisedCorrelation(signal, lag);
        if (value > bestValue) {
            bestValue = value;
            best = lag;
        }
    }
    const double below = normalisedCorrelation(signal, best - 1);
    const double above = normalisedCorrelation(signal, best + 1);
    const double curve = below - 2.0 * bestValue + above;
    const double offset = curve < 0.0 ? 0.5 * (below - above) / curve : 0.0;
    return static_cast<double>(best) + offset;
}

/// The levels of a steady voice's harmonics in dB, by correlation with Hann-windowed complex tones.
std::vector<double> harmonicLevels(std::span<const float> signal, double pitchHz, double sampleRate,
                                   double upToHz)
{
    std::vector<double> levels;
    const auto length = static_cast<double>(signal.size());
    for (int h = 1; h * pitchHz < upToHz; ++h) {
        std::complex<double> sum = 0.0;
        const double step = 2.0 * std::numbers::pi * h * pitchHz / sampleRate;
        for (std::size_t i = 0; i < signal.size(); ++i) {
            const auto n = static_cast<double>(i);
            const double hann = 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * n / length);
            sum += hann * signal[i] * std::polar(1.0, -step * n);
        }
        levels.push_back(20.0 * std::log10(std::abs(sum) / length + 1e-9));
    }
    return levels;
}

/// The level at a frequency between harmonics, interpolated in dB over log frequency.
double levelAt(const std::vector<double>& levels, double pitchHz, double frequencyHz)
{
    const double position = frequencyHz / pitchHz;
    const double lower =
        std::clamp(std::floor(position), 1.0, static_cast<double>(levels.size() - 1));
    const double share = std::log(position / lower) / std::log((lower + 1.0) / lower);
    const auto index = static_cast<std::size_t>(lower) - 1;
    return levels[index] + share * (levels[index + 1] - levels[index]);
}

}  // namespace

double centsBetween(double a, double b)
{
    return 1200.0 * std::log2(a / b);
}

double measurePitch(std::span<const float> signal, double sampleRate, double expectedHz)
{
    // One period gives a first estimate; longer spans make it more precise.
    double period = peakLag(signal, sampleRate / expectedHz, 0.06 * sampleRate / expectedHz + 1.0);
    for (const int periods : {3, 10, 30}) {
        if (periods * period > 0.5 * static_cast<double>(signal.size()))
            break;
        period = peakLag(signal, periods * period, 0.4 * period) / periods;
    }
    return sampleRate / period;
}

double errorDecibels(std::span<const float> signal, std::span<const float> reference)
{
    double error = 0.0;
    double level = 0.0;
    for (std::size_t i = 0; i < reference.size(); ++i) {
        const double difference = static_cast<double>(signal[i]) - reference[i];
        error += difference * difference;
        level += static_cast<double>(reference[i]) * reference[i];
    }
    return 10.0 * std::log10(error / level + 1e-30);
}

double envelopeShift(std::span<const float> before, double beforeHz, std::span<const float> after,
                     double afterHz, double sampleRate, double lowHz, double highHz)
{
    const std::vector<double> from = harmonicLevels(before, beforeHz, sampleRate, 2.0 * highHz);
    const std::vector<double> to = harmonicLevels(after, afterHz, sampleRate, 4.0 * highHz);
    double bestShift = 0.0;
    double bestError = std::numeric_limits<double>::max();
    for (double shift = -12.0; shift <= 12.0; shift += 0.02) {
        double sum = 0.0;
        double squares = 0.0;
        int count = 0;
        for (double hz = lowHz; hz < highHz; hz *= std::exp2(1.0 / 48.0), ++count) {
            const double moved = hz * std::exp2(shift / 12.0);
            const double difference = levelAt(to, afterHz, moved) - levelAt(from, beforeHz, hz);
            sum += difference;
            squares += difference * difference;
        }
        const double error = squares - sum * sum / count;
        if (error < bestError) {
            bestError = error;
            bestShift = shift;
        }
    }
    return bestShift;
}

}  // namespace orvane
