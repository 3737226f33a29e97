// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Signals.h"

namespace orvane
{

std::vector<float> harmonicTone(double pitchHz, double sampleRate, int samples, double limitHz)
{
    const int harmonics = static_cast<int>(std::min(limitHz, sampleRate * 0.45) / pitchHz);
    std::vector<float> tone(static_cast<std::size_t>(samples));
    for (int i = 0; i < samples; ++i) {
        const double phase = 2.0 * std::numbers::pi * std::fmod(pitchHz * i / sampleRate, 1.0);
        double sum = 0.0;
        for (int h = 1; h <= harmonics; ++h)
            sum += std::sin(h * phase) / h;
        tone[static_cast<std::size_t>(i)] = static_cast<float>(0.27 * sum);
    }
    return tone;
}

std::vector<float> whiteNoise(float amplitude, int samples, std::uint32_t seed)
{
    // Scaled here, because the distributions of C++ libraries differ.
    std::mt19937 generator(seed);
    std::vector<float> noise(static_cast<std::size_t>(samples));
    for (float& sample : noise)
        sample =
            amplitude * static_cast<float>(static_cast<double>(generator()) / 2147483648.0 - 1.0);
    return noise;
}

}  // namespace orvane
