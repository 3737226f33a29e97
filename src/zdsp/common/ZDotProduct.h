// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// How many products are summed side by side; the compiler may not change the order of one sum by
/// itself.
inline constexpr int kPartialDotProducts = 8;

/// The sum of a[i] * b[i], i = 0 .. count - 1, in the form that suits the processor. Eight partial
/// sums are taken in single precision; they, and the products after the last eight, are added in
/// double. All forms give the same result.
///
/// There is a source file of Fastest for each instruction set, and the build uses one of them.
class ZDotProduct
{
public:
    /// [audio thread]
    using Function = double (*)(const float* a, const float* b, int count) noexcept;

    /// The form for any processor. [any thread]
    [[nodiscard]] static Function Plain() noexcept;
    /// The form for this processor. [any thread]
    [[nodiscard]] static Function Fastest() noexcept;
    /// What all forms end with: adds up the partial sums, and the products of the samples that are
    /// left. [audio thread]
    [[nodiscard]] static double AddUp(const float (&sums)[kPartialDotProducts], const float* a,
                                      const float* b, int left) noexcept;
};

}  // namespace orvane
