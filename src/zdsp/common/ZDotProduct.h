// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// How many products are summed side by side; the compiler may not change the order of one sum by
/// itself.
inline constexpr int kPartialDotProducts = 8;

/// The sum of a[i] * b[i], i = 0 .. count - 1, in the form that suits the processor. Eight partial
/// sums are taken in single precision. They are added in double, those that are four apart first,
/// then those two apart; the products after the last eight follow one by one. All forms give the
/// same result.
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
    /// What all forms end with: adds the products of the samples that are left. [audio thread]
    [[nodiscard]] static double AddProducts(double sum, const float* a, const float* b,
                                            int left) noexcept
    {
        for (int i = 0; i < left; ++i)
            sum += static_cast<double>(a[i]) * static_cast<double>(b[i]);
        return sum;
    }
};

}  // namespace orvane
