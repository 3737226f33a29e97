// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>

namespace orvane
{

/// A bar on standard error for as long as it lives, where that is a terminal; nothing elsewhere.
class ProgressBar
{
public:
    /// total: frames to come, or a guess.
    explicit ProgressBar(std::int64_t total);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// done: frames so far. Draws some times a second at most.
    void Show(std::int64_t done);

private:
    std::int64_t mTotal;
    bool mIsTerminal;
    std::chrono::steady_clock::time_point mNextDraw;
};

}  // namespace orvane
