#pragma once

#include "kestrune/common/PsolaClass.h"

#include <algorithm>
#include <span>
#include <vector>

namespace orvane
{

/// The block that the engine is given at a rate: 11.6 ms.
inline int hopAt(float sampleRate)
{
    return static_cast<int>(sampleRate * 0.0116f + 0.5f);
}

/// Runs a stereo signal through an engine that is ready, in its blocks; a last block that is not
/// full is dropped. Gives both channels.
struct EngineOutput
{
    std::vector<float> left;
    std::vector<float> right;
};

inline EngineOutput runEngine(PsolaClass& engine, int hop, std::span<const float> left,
                              std::span<const float> right)
{
    EngineOutput out{std::vector<float>(left.size()), std::vector<float>(left.size())};
    for (std::size_t at = 0; at + static_cast<std::size_t>(hop) <= left.size();
         at += static_cast<std::size_t>(hop))
    {
        const float* const inputs[] = {left.data() + at, right.data() + at};
        float* const outputs[] = {out.left.data() + at, out.right.data() + at};
        engine.Process(inputs, outputs, hop);
    }
    return out;
}

inline std::vector<float> runEngine(PsolaClass& engine, int hop, std::span<const float> both)
{
    return runEngine(engine, hop, both, both).left;
}

}  // namespace orvane
