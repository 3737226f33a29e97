// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/ProgressBar.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <string>

namespace orvane
{

namespace
{

constexpr int kCells = 40;
constexpr std::chrono::milliseconds kDrawEvery{50};

}  // namespace

ProgressBar::ProgressBar(std::int64_t totalFrames, std::size_t totalFiles)
    : mTotalFrames(std::max<std::int64_t>(totalFrames, 1))
    , mTotalFiles(totalFiles)
    , mIsTerminal(isatty(STDERR_FILENO) == 1)
{
}

ProgressBar::~ProgressBar()
{
    Clear();
}

void ProgressBar::Add(std::int64_t frames)
{
    assert(frames >= 0);
    mFrames += frames;
    const auto now = std::chrono::steady_clock::now();
    if (!mIsTerminal || now < mNextDraw)
        return;
    mNextDraw = now + kDrawEvery;
    Draw();
}

void ProgressBar::AddFile()
{
    ++mFiles;
    if (mIsTerminal)
        Draw();
}

void ProgressBar::Clear()
{
    if (mIsTerminal)
        fmt::print(stderr, "\r\x1b[K");
}

void ProgressBar::Draw()
{
    const double share =
        std::min(static_cast<double>(mFrames) / static_cast<double>(mTotalFrames), 1.0);
    const auto full = static_cast<std::size_t>(share * kCells);
    std::string text = fmt::format("\r{}{} {:3.0f} %", std::string(full, '#'),
                                   std::string(kCells - full, '.'), share * 100.0);
    if (mTotalFiles > 1)
        text += fmt::format(", {} of {} files", mFiles, mTotalFiles);
    fmt::print(stderr, "{}", text);
}

}  // namespace orvane
