// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/ProductInstance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>

namespace orvane
{

/// Loads any bytes as a chunk and checks the state of the instance afterwards.
class ChunkCheck
{
public:
    ChunkCheck()
        : mStart((mInstance.LoadBank(mInstance.Bank()), mInstance.Bank()))
    {
        mInstance.Ask(effSetBlockSize, 0, kFrames);
        mInstance.Ask(effMainsChanged, 0, 1);
    }

    /// Loads the bytes and returns what is wrong then; empty when nothing is.
    std::string FaultAfter(const std::string& bytes, bool isProgram)
    {
        const std::string before = mInstance.Program();
        const std::intptr_t answer = loadChunk(mInstance.effect, bytes, isProgram);
        const std::string after = mInstance.Program();
        std::string fault;
        if (bytes.empty() ? answer != 0 : answer != 0 && answer != 1)
            fault = "the answer is neither 0 nor 1";
        else if (answer == 0 && after != before)
            fault = "the chunk was refused, but the state has changed";
        else if (!Settles(after))
            fault = "the new state does not survive saving and loading";
        else if (!SoundIsFinite())
            fault = "the sound is not finite";
        mInstance.LoadBank(mStart);
        return fault;
    }

    /// Returns the bank with which each check starts.
    [[nodiscard]] const std::string& Start() const { return mStart; }

private:
    static constexpr std::int32_t kFrames = 512;

    // Compares the second and third texts: reading a scale sets flags that are neither 0 nor 1.
    bool Settles(const std::string& program)
    {
        mInstance.LoadProgram(program);
        const std::string once = mInstance.Program();
        mInstance.LoadProgram(once);
        return mInstance.Program() == once;
    }

    bool SoundIsFinite()
    {
        std::array<float, kFrames> in{0.5f};
        std::array<float, kFrames> left{};
        std::array<float, kFrames> right{};
        float* inputs[] = {in.data(), in.data()};
        float* outputs[] = {left.data(), right.data()};
        mInstance.effect->processReplacing(mInstance.effect, inputs, outputs, kFrames);
        const auto isFinite = [](float sample) { return std::isfinite(sample); };
        return std::ranges::all_of(left, isFinite) && std::ranges::all_of(right, isFinite);
    }

    ProductInstance mInstance;
    std::string mStart;
};

}  // namespace orvane
