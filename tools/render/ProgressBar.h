// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace orvane
{

/// A progress bar on standard error for the life of the object. Draws only on a terminal, at most
/// 20 times a second.
class ProgressBar
{
public:
    /// The expected number of frames, and of files when there are several.
    ProgressBar(std::int64_t totalFrames, std::size_t totalFiles);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Counts frames that were processed.
    void Add(std::int64_t frames);
    /// Counts a file that was finished.
    void AddFile();
    /// Removes the bar until it is drawn next, so that a line can be printed in its place.
    void Clear();

private:
    void Draw();

    std::int64_t mTotalFrames;
    std::size_t mTotalFiles;
    std::int64_t mFrames = 0;
    std::size_t mFiles = 0;
    bool mIsTerminal;
    std::chrono::steady_clock::time_point mNextDraw;
};

}  // namespace orvane
