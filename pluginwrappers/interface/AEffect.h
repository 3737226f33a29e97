// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

struct AEffect;

/// The function by which the plug-in calls the host. effect may be null for audioMasterVersion
/// only.
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

/// Packs four characters into a number, the first into the most significant byte.
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

/// The record that host and plug-in share. The offsets of its fields are part of the interface.
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
    std::intptr_t resvd1;  // used by the host, as is resvd2: the plug-in never writes them
    std::intptr_t resvd2;
    std::int32_t initialDelay;   // latency in sample frames
    std::int32_t realQualities;  // unused by current hosts, as is offQualities
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
