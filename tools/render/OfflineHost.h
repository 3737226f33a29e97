// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/VstTimeInfo.h"

#include <cstdint>

namespace orvane
{

/// The host side of the plug-in interface: answers the plug-in as a host that renders a file
/// offline, in a song at 120 BPM in 4/4 that starts with the file.
class OfflineHost
{
public:
    /// rate in Hz; blockFrames is the longest block. [setup]
    void SetFormat(int rate, int blockFrames);
    /// Sets the frame at which the next block starts; negative before the input. Call between
    /// blocks.
    void MoveTo(std::int64_t frame);

    /// Answers a host opcode of the plug-in; ptr is the argument of that name. [any thread]
    [[nodiscard]] std::intptr_t Answer(std::int32_t opcode, void* ptr) noexcept;

private:
    int mRate = 44100;
    int mBlockFrames = 512;
    bool mIsStart = true;  // the next block is the first
    VstTimeInfo mTime{};
};

}  // namespace orvane
