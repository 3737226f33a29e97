// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>

namespace orvane
{

/// A complex Fourier transform, out of place and unscaled: all that is needed of a Fourier library.
/// There is a source file for each supported library, and the build uses one of them.
class ZComplexTransform
{
public:
    enum class Direction
    {
        kForward,
        kInverse
    };

    /// Prepares a transform of length complex values. Throws ZException when that fails. [setup]
    ZComplexTransform(std::uint32_t length, Direction direction);
    ZComplexTransform(const ZComplexTransform&) = delete;
    ZComplexTransform& operator=(const ZComplexTransform&) = delete;
    ~ZComplexTransform();

    /// Transforms in, which is unchanged, to out. Both are length pairs of real and imaginary
    /// parts, aligned as ZBuffer is, and do not overlap. [audio thread]
    void Run(const float* in, float* out) const noexcept;

private:
    struct Plan;
    std::unique_ptr<Plan> mPlan;
};

}  // namespace orvane
