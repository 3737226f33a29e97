// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>

namespace orvane
{

/// The one transform that a Fourier library is asked for: complex, out of place, unscaled. Each
/// library that can stand behind it has a source of its own, one of which is built.
class ZComplexTransform
{
public:
    enum class Direction
    {
        kForward,
        kInverse
    };

    /// Plans for length complex values. Throws ZException code -1 when it cannot. [setup]
    ZComplexTransform(std::uint32_t length, Direction direction);
    ZComplexTransform(const ZComplexTransform&) = delete;
    ZComplexTransform& operator=(const ZComplexTransform&) = delete;
    ~ZComplexTransform();

    /// in, which stays, and out are interleaved real and imaginary parts, apart from each other
    /// and aligned as sample buffers are. [audio thread]
    void Run(const float* in, float* out) const noexcept;

private:
    struct Plan;
    std::unique_ptr<Plan> mPlan;
};

}  // namespace orvane
