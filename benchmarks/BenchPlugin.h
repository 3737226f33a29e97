// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"
#include "pluginwrappers/interface/VstOpcodes.h"

#include <dlfcn.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

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

/// Loads the program that is set, with the other tracking: what is saved without one is Classic.
inline void chooseTracking(AEffect* effect, bool isFine)
{
    void* data = nullptr;
    constexpr std::int32_t kProgram = 1;
    const std::intptr_t size = effect->dispatcher(effect, effGetChunk, kProgram, 0, &data, 0.0f);
    std::string text(static_cast<const char*>(data), static_cast<std::size_t>(size));
    constexpr std::string_view kFine = "<element name=\"tracking\" int32value=\"1\"></element>\n";
    constexpr std::string_view kName = "<element name=\"tracking\"";
    if (const auto at = text.find(kName); at != std::string::npos) {
        constexpr std::string_view kEnd = "</element>";
        text.erase(at, text.find(kEnd, at) + kEnd.size() - at);
    }
    if (isFine)
        text.insert(text.rfind("</elements>"), kFine);
    effect->dispatcher(effect, effSetChunk, kProgram, static_cast<std::intptr_t>(text.size()),
                       text.data(), 0.0f);
}

[[nodiscard]] inline double milliseconds(std::chrono::nanoseconds time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

}  // namespace orvane
