// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>

namespace orvane
{

/// A progress bar on standard error for the life of the object. Draws only on a terminal.
class ProgressBar
{
public:
    /// total is the expected number of frames.
    explicit ProgressBar(std::int64_t total);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// done is the number of frames so far. Draws at most 20 times a second.
    void Show(std::int64_t done);

private:
    std::int64_t mTotal;
    bool mIsTerminal;
    std::chrono::steady_clock::time_point mNextDraw;
};

}  // namespace orvane
