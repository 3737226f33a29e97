// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/ProductInstance.h"
#include "support/StateCheck.h"

namespace orvane
{

/// Loads any bytes as a chunk and checks the state of the instance afterwards.
struct ChunkCheck
{
    /// Loads the bytes and returns what is wrong then; empty when nothing is.
    std::string FaultAfter(const std::string& bytes, bool isProgram)
    {
        std::intptr_t answer = 0;
        const std::string fault = mCheck.FaultAfter([&] {
            answer = loadChunk(mInstance.effect, bytes, isProgram);
            return answer == 1;
        });
        mInstance.LoadBank(mStart);
        const bool isAnswer = answer == 0 || (answer == 1 && !bytes.empty());
        return isAnswer ? fault : "the answer is neither 0 nor 1";
    }

    /// Returns the bank with which each check starts.
    [[nodiscard]] const std::string& Start() const { return mStart; }

private:
    /// An instance that plays, and its current program.
    struct Playing : ProductInstance
    {
        Playing()
        {
            Ask(effSetBlockSize, 0, kFrames);
            Ask(effMainsChanged, 0, 1);
        }
        void Load(const std::string& text) const { LoadProgram(text); }
        [[nodiscard]] std::string Save() const { return Program(); }
        [[nodiscard]] bool RunBlock() const
        {
            std::array<float, kFrames> left{0.5f};
            std::array<float, kFrames> right{0.5f};
            float* channels[] = {left.data(), right.data()};
            effect->processReplacing(effect, channels, channels, kFrames);
            const auto isFinite = [](float sample) { return std::isfinite(sample); };
            return std::ranges::all_of(left, isFinite) && std::ranges::all_of(right, isFinite);
        }

    private:
        static constexpr std::int32_t kFrames = 512;
    };

    Playing mInstance;
    const std::string mStart = (mInstance.LoadBank(mInstance.Bank()), mInstance.Bank());
    StateCheck<Playing> mCheck{mInstance};
};

}  // namespace orvane
