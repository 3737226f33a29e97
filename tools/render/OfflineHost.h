// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/VstTimeInfo.h"

#include <atomic>
#include <cstdint>

namespace orvane
{

/// What a host tells its plug-in when asked: one that renders a file, as fast as it can, in a song
/// of 120 quarter notes a minute and four a bar which begins with the file.
class OfflineHost
{
public:
    /// rate in Hz. [setup]
    void SetFormat(int rate, int blockFrames);
    /// Where the next block begins, in frames. Between blocks.
    void MoveTo(std::int64_t frame);

    /// The answer to a question of the plug-in. ptr: what came with the question. [any thread]
    [[nodiscard]] std::intptr_t Answer(std::int32_t opcode, void* ptr) noexcept;

    /// How often the plug-in told of a value of a parameter, new or not.
    [[nodiscard]] int AutomationCalls() const { return mAutomationCalls; }

private:
    int mRate = 44100;
    int mBlockFrames = 512;
    VstTimeInfo mTime{};
    std::atomic<int> mAutomationCalls{0};
};

}  // namespace orvane
