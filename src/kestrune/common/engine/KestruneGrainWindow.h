// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// A mark as the sample before it and the fraction of a sample between them.
struct KestruneMarkPosition
{
    explicit KestruneMarkPosition(double mark) noexcept
        : sample(static_cast<long long>(mark))
        , fraction(static_cast<float>(mark - static_cast<double>(sample)))
    {
    }

    long long sample;
    float fraction;
};

/// The window of a grain, for u in -1 .. 1:
///
/// w(u) = (1 + 1.125 cos(pi u) - 0.125 cos(3 pi u)) / 2, computed as t^2 (3 - 2 t) with
/// t = cos^2(pi u / 2), which is the same by cos(3 a) = 4 cos^3 a - 3 cos a. w(u) + w(u - 1) = 1,
/// so grains whose flanks meet add up to the input.
///
/// The cosine is a power series in u^2 up to u^12, exact to 1e-8: unlike the library's it lets the
/// compiler vectorise a loop. [audio thread]
[[nodiscard]] inline float kestruneGrainWindow(float u) noexcept
{
    const float z = u * u;
    float cosine = 4.7108748e-7f;
    cosine = cosine * z - 2.5202042e-5f;
    cosine = cosine * z + 9.1926027e-4f;
    cosine = cosine * z - 2.0863481e-2f;
    cosine = cosine * z + 2.5366951e-1f;
    cosine = cosine * z - 1.2337006f;
    cosine = cosine * z + 1.0f;
    const float t = cosine * cosine;
    return t * t * (3.0f - 2.0f * t);
}

}  // namespace orvane
