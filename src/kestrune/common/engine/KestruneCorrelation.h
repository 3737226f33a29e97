// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Sum of the products of two runs of count samples. [audio thread]
[[nodiscard]] double dotProduct(const float* a, const float* b, int count) noexcept;

/// What the correlation of two stretches of count samples costs, in processor instructions, about:
/// five products take two with AVX2. [any thread]
[[nodiscard]] constexpr int correlationInstructions(int count) noexcept
{
    return 60 + count * 2 / 5;
}
/// Of the units that steps of an analysis are weighed in, as KestruneClassicAnalysis says.
inline constexpr int kInstructionsOfUnit = 1000;

/// How alike two stretches of a signal are, by their sum of products and their energies: the
/// normalised square difference of P. McLeod and G. Wyvill, "A smarter way to find pitch",
/// Proceedings of the ICMC, 2005, which they call clarity. 1 for equal stretches, 0 for unrelated
/// ones. [any thread]
[[nodiscard]] double normalisedCorrelation(double product, double energyA, double energyB) noexcept;

/// The top of the parabola through three values at -1, 0 and 1, of which the middle one is largest.
struct ParabolaTop
{
    ParabolaTop(double left, double middle, double right) noexcept;

    double offset;  // -1 .. 1
    double height;  // at most 1, the most that a correlation can be
};

}  // namespace orvane
