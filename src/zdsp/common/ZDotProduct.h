// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

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
};

}  // namespace orvane
