// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowFrames.h"

#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"
#include "zlib/common/views/ZWindowTimers.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace orvane
{

ZWindowFrames::ZWindowFrames(ZHandler& window)
    : mWindow(window)
    , mTimer(ZWindow::kNoTimer)
{
}

ZWindowFrames::~ZWindowFrames()
{
    StopTimer();
}

void ZWindowFrames::Add(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    assert(view && std::ranges::count(mViews.Copy(), view) == 0);
    mViews.Append(view);
    view->SetFrameRate(static_cast<float>(mRate));
    UpdateTimer();
}

void ZWindowFrames::Remove(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    mViews.Remove(view);
    UpdateTimer();
}

void ZWindowFrames::SetPaused(bool paused)
{
    assert(ZInterfaceLock::IsHeld());
    mPaused = paused;
    UpdateTimer();
}

void ZWindowFrames::SetRate(std::int32_t rate)
{
    assert(rate >= 1);
    mRequestedRate = rate;
}

void ZWindowFrames::UpdateRate()
{
    if (mRate == mRequestedRate)
        return;
    StopTimer();
    mRate = mRequestedRate;
    UpdateTimer();
}

void ZWindowFrames::CallViews() const
{
    for (ZView* const view : mViews.Copy()) {
        // An earlier view may have removed or destroyed this one.
        if (std::ranges::count(mViews.Copy(), view) != 0)
            view->IdleTick();
    }
}

void ZWindowFrames::UpdateTimer()
{
    const bool isWanted = mViews.Count() > 0 && !mPaused;
    if (!isWanted)
        return StopTimer();
    if (mTimer == ZWindow::kNoTimer)
        mTimer = ZWindowTimers::Start(1'000'000 / mRate, mWindow);
}

void ZWindowFrames::StopTimer()
{
    if (mTimer != ZWindow::kNoTimer)
        ZWindowTimers::Stop(std::exchange(mTimer, ZWindow::kNoTimer));
}

}  // namespace orvane
