// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/PsolaClass.h"
#include "support/Standard.h"

namespace orvane
{

constexpr float kRate = 44100.0f;
constexpr int kHop = 512;  // at kRate
/// The tones of a scale of all semitones, above the root.
inline const std::vector<float> kChromatic{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};

/// The block that the engine is given at a rate: 11.6 ms.
inline int hopAt(float sampleRate)
{
    return static_cast<int>(sampleRate * 0.0116f + 0.5f);
}

using Stereo = std::vector<std::vector<float>>;

/// Runs two channels through an engine that is ready, in its blocks; a last block that is not full
/// is dropped.
inline Stereo runEngine(PsolaClass& engine, int hop, const Stereo& input)
{
    Stereo out(2, std::vector<float>(input[0].size()));
    const auto block = static_cast<std::size_t>(hop);
    for (std::size_t at = 0; at + block <= input[0].size(); at += block) {
        const float* const inputs[] = {input[0].data() + at, input[1].data() + at};
        float* const outputs[] = {out[0].data() + at, out[1].data() + at};
        engine.Process(inputs, outputs, hop);
    }
    return out;
}

/// The same with two channels alike; gives one of them.
inline std::vector<float> runEngine(PsolaClass& engine, int hop, const std::vector<float>& both)
{
    return runEngine(engine, hop, Stereo{both, both})[0];
}

/// The loudest sample; infinite when one is not finite.
inline float largestOf(std::span<const float> sound)
{
    float most = 0.0f;
    for (const float sample : sound)
        most = std::isfinite(sample) ? std::max(most, std::fabs(sample)) : HUGE_VALF;
    return most;
}

}  // namespace orvane
