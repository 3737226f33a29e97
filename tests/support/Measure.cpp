// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Measure.h"

#include "support/Standard.h"

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
    // A value at the border is no peak, and its parabola's top may lie anywhere.
    const double offset = curve < 0.0 ? std::clamp(0.5 * (below - above) / curve, -1.0, 1.0) : 0.0;
    return static_cast<double>(best) + offset;
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
        error += std::pow(static_cast<double>(signal[i]) - static_cast<double>(reference[i]), 2.0);
        level += std::pow(static_cast<double>(reference[i]), 2.0);
    }
    return 10.0 * std::log10(error / level + 1e-30);
}

double clickDecibels(std::span<const float> signal, double sampleRate, double aboveHz)
{
    // A windowed sinc (Blackman) whose side lobes lie below -74 dB.
    constexpr int kHalf = 160;
    std::vector<double> taps;
    for (int i = -kHalf; i <= kHalf; ++i) {
        const double turn = std::numbers::pi * i / (kHalf + 1);
        const double window = 0.42 + 0.5 * std::cos(turn) + 0.08 * std::cos(2.0 * turn);
        const double cutOff = 2.0 * aboveHz / sampleRate;
        const double x = std::numbers::pi * cutOff * i;
        taps.push_back((i == 0 ? 1.0 - cutOff : -cutOff * std::sin(x) / x) * window);
    }
    double all = 1e-9;
    double above = 0.0;
    for (std::size_t i = 0; i + taps.size() <= signal.size(); ++i) {
        double sum = 0.0;
        for (std::size_t k = 0; k < taps.size(); ++k)
            sum += taps[k] * static_cast<double>(signal[i + k]);
        above = std::max(above, std::fabs(sum));
        all = std::max(all, std::fabs(static_cast<double>(signal[i + kHalf])));
    }
    return 20.0 * std::log10(above / all + 1e-9);
}

}  // namespace orvane
