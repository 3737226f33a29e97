// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/ProductInstance.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

namespace orvane
{

/// Gives any bytes to an instance as its chunk and tells what is wrong with it then; empty when
/// nothing is.
class ChunkCheck
{
public:
    ChunkCheck()
        : mStart((mInstance.LoadBank(mInstance.Bank()), mInstance.Bank()))
    {
        mInstance.Ask(effSetBlockSize, 0, kFrames);
        mInstance.Ask(effMainsChanged, 0, 1);
    }

    std::string FaultAfter(const std::string& bytes, bool isProgram)
    {
        const std::string before = mInstance.Program();
        const std::intptr_t answer = mInstance.Load(bytes, isProgram);
        const std::string after = mInstance.Program();
        std::string fault;
        if (bytes.empty() ? answer != 0 : answer != 0 && answer != 1)
            fault = "an answer that there is not";
        else if (answer == 0 && after != before)
            fault = "refused, but the state is another";
        else if (!Settles(after))
            fault = "what was taken over does not come back from its own chunk";
        else if (!SoundIsFinite())
            fault = "the sound is no number";
        mInstance.LoadBank(mStart);
        return fault;
    }

    /// The bank that it starts with.
    [[nodiscard]] const std::string& Start() const { return mStart; }

private:
    static constexpr std::int32_t kFrames = 512;

    // Flags that are neither on nor off become so when their scales are read, so once is too few.
    bool Settles(const std::string& program)
    {
        mInstance.LoadProgram(program);
        const std::string once = mInstance.Program();
        mInstance.LoadProgram(once);
        return mInstance.Program() == once;
    }

    bool SoundIsFinite()
    {
        std::array<float, kFrames> in{};
        in[0] = 0.5f;
        std::array<float, kFrames> left{};
        std::array<float, kFrames> right{};
        float* inputs[] = {in.data(), in.data()};
        float* outputs[] = {left.data(), right.data()};
        mInstance.effect->processReplacing(mInstance.effect, inputs, outputs, kFrames);
        for (std::size_t i = 0; i < left.size(); ++i)
            if (!std::isfinite(left[i]) || !std::isfinite(right[i]))
                return false;
        return true;
    }

    ProductInstance mInstance;
    std::string mStart;
};

}  // namespace orvane
