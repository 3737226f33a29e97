// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneGlottalAlignment.h"

#include "kestrune/common/engine/KestruneStereoRing.h"

#include <cassert>
#include <cmath>
#include <complex>
#include <numbers>

namespace orvane
{

namespace
{

/// Where the grain stands behind the centre of the pulse, in cycles.
constexpr double kBehindPulse = 0.05;
constexpr double kTurn = 2.0 * std::numbers::pi;

}  // namespace

void KestruneGlottalAlignment::Allocate(int longestPeriod)
{
    assert(longestPeriod > 0);
    mCycles.resize(2 * static_cast<std::size_t>(longestPeriod) + 3);
}

double KestruneGlottalAlignment::WaitAt(const KestruneStereoRing& input, std::int16_t reference,
                                        double mark, float period) noexcept
{
    const auto cycle = static_cast<double>(period);
    const auto first = static_cast<long long>(std::ceil(mark + cycle));
    const auto count = static_cast<int>(2.0 * cycle);
    assert(period > 0.0f && count + 1 <= static_cast<int>(mCycles.size()));
    input.ReadMono(reference, input.Index(first - 1), count + 1, mCycles.data());

    const std::complex<double> step = std::polar(1.0, kTurn / cycle);
    std::complex<double> phase =
        std::polar(1.0, kTurn * (static_cast<double>(first) - mark) / cycle);
    std::complex<double> sum;
    for (int i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const auto change = static_cast<double>(mCycles[at + 1]) - static_cast<double>(mCycles[at]);
        sum += change * change * phase;
        phase *= step;
    }
    const double cycles = std::arg(sum) / kTurn + kBehindPulse;
    return (cycles - std::floor(cycles)) * cycle;
}

}  // namespace orvane
