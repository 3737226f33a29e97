// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/ProgressBar.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace orvane
{

namespace
{

constexpr int kCells = 40;
constexpr std::chrono::milliseconds kDrawEvery{50};

}  // namespace

ProgressBar::ProgressBar(std::int64_t total)
    : mTotal(std::max<std::int64_t>(total, 1))
    , mIsTerminal(isatty(STDERR_FILENO) == 1)
{
}

ProgressBar::~ProgressBar()
{
    if (mIsTerminal)
        fmt::print(stderr, "\r\x1b[K");
}

void ProgressBar::Show(std::int64_t done)
{
    const auto now = std::chrono::steady_clock::now();
    if (!mIsTerminal || now < mNextDraw)
        return;
    mNextDraw = now + kDrawEvery;
    const double share = std::min(static_cast<double>(done) / static_cast<double>(mTotal), 1.0);
    const auto full = static_cast<std::size_t>(share * kCells);
    fmt::print(stderr, "\r{}{} {:3.0f} %", std::string(full, '#'), std::string(kCells - full, '.'),
               share * 100.0);
}

}  // namespace orvane
