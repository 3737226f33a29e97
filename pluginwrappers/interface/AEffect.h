// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

struct AEffect;

/// The host's one service function. A null effect is allowed with audioMasterVersion only.
using audioMasterCallback = std::intptr_t (*)(AEffect* effect, std::int32_t opcode,
                                              std::int32_t index, std::intptr_t value, void* ptr,
                                              float opt);

using AEffectDispatcherProc = std::intptr_t (*)(AEffect* effect, std::int32_t opcode,
                                                std::int32_t index, std::intptr_t value, void* ptr,
                                                float opt);
/// inputs and outputs: channels x sampleFrames.
using AEffectProcessProc = void (*)(AEffect* effect, float** inputs, float** outputs,
                                    std::int32_t sampleFrames);
using AEffectProcessDoubleProc = void (*)(AEffect* effect, double** inputs, double** outputs,
                                          std::int32_t sampleFrames);
using AEffectSetParameterProc = void (*)(AEffect* effect, std::int32_t index, float parameter);
using AEffectGetParameterProc = float (*)(AEffect* effect, std::int32_t index);

/// Four characters as one number, the first in the most significant byte.
[[nodiscard]] constexpr std::int32_t fourCharacters(const char (&text)[5])
{
    std::uint32_t packed = 0;
    for (int i = 0; i < 4; ++i)
        packed = packed << 8 | static_cast<unsigned char>(text[i]);
    return static_cast<std::int32_t>(packed);
}

constexpr std::int32_t kEffectMagic = fourCharacters("VstP");

/// Bits of AEffect::flags.
enum AEffectFlags : std::int32_t
{
    effFlagsHasEditor = 1 << 0,
    effFlagsHasClip = 1 << 1,
    effFlagsHasVu = 1 << 2,
    effFlagsCanMono = 1 << 3,
    effFlagsCanReplacing = 1 << 4,
    effFlagsProgramChunks = 1 << 5,
};

/// What host and plug-in know of each other. The fields' places are the interface: hosts read and
/// call through them, in whatever language they are written.
struct AEffect
{
    std::int32_t magic;
    AEffectDispatcherProc dispatcher;
    AEffectProcessProc process;  // adds to the outputs
    AEffectSetParameterProc setParameter;
    AEffectGetParameterProc getParameter;
    std::int32_t numPrograms;
    std::int32_t numParams;
    std::int32_t numInputs;
    std::int32_t numOutputs;
    std::int32_t flags;
    std::intptr_t resvd1;  // the host's own, as is resvd2: never written after construction
    std::intptr_t resvd2;
    std::int32_t initialDelay;   // latency in sample frames
    std::int32_t realQualities;  // unused by today's hosts, as is offQualities
    std::int32_t offQualities;
    float ioRatio;
    void* object;  // the effect object
    void* user;
    std::int32_t uniqueID;
    std::int32_t version;
    AEffectProcessProc processReplacing;  // overwrites the outputs
    AEffectProcessDoubleProc processDoubleReplacing;
    char future[56];
};

}  // namespace orvane
