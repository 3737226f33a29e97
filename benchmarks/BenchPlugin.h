// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"
#include "pluginwrappers/interface/VstOpcodes.h"

#include <dlfcn.h>

#include <chrono>
#include <cstdint>

namespace orvane
{

/// What the programs that measure the built library share: the host's side of the interface.

inline constexpr float kBenchRate = 44100.0f;  // Hz
inline constexpr int kBenchBlock = 512;        // frames

using BenchClock = std::chrono::steady_clock;
using PluginEntry = AEffect* (*)(audioMasterCallback);

inline std::intptr_t benchHost(AEffect* /*effect*/, std::int32_t opcode, std::int32_t /*index*/,
                               std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    return opcode == audioMasterVersion ? kVstVersion : 0;
}

inline std::intptr_t ask(AEffect* effect, std::int32_t opcode, std::intptr_t value = 0,
                         void* ptr = nullptr, float opt = 0.0f)
{
    return effect->dispatcher(effect, opcode, 0, value, ptr, opt);
}

/// Switches correction on or off and starts processing.
inline void startPlugin(AEffect* effect, bool corrects)
{
    constexpr int kCorrectPitch = 0;
    effect->setParameter(effect, kCorrectPitch, corrects ? 1.0f : 0.0f);
    ask(effect, effSetSampleRate, 0, nullptr, kBenchRate);
    ask(effect, effSetBlockSize, kBenchBlock);
    ask(effect, effMainsChanged, 1);
}

[[nodiscard]] inline double milliseconds(std::chrono::nanoseconds time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

}  // namespace orvane
