// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// White noise that is the same on every run and with every standard library (the generator of
/// G. Steele, D. Lea and C. Flood, "Fast splittable pseudorandom number generators", OOPSLA 2014).
class SeededNoise
{
public:
    explicit SeededNoise(std::uint64_t seed)
        : mState(seed)
    {
    }

    /// The next value, uniform in -1 .. 1.
    double next()
    {
        mState += 0x9e3779b97f4a7c15u;
        std::uint64_t z = mState;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
        z ^= z >> 31;
        return static_cast<double>(z >> 11) * 0x1p-52 - 1.0;
    }

private:
    std::uint64_t mState;
};

}  // namespace orvane
