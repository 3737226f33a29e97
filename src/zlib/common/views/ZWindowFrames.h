// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLockedList.h"

#include <cstdint>

namespace orvane
{

class ZHandler;
class ZView;

/// The animation frames of a window: its idle views, and the one timer that calls them while there
/// are any and the window is shown. [interface thread, with the interface lock]
class ZWindowFrames
{
public:
    static constexpr std::int32_t kDefaultRate = 15;  // frames a second

    /// The window, which is not owned, gets ZTIMER at each frame.
    explicit ZWindowFrames(ZHandler& window);
    ZWindowFrames(const ZWindowFrames&) = delete;
    ZWindowFrames& operator=(const ZWindowFrames&) = delete;
    ~ZWindowFrames();

    /// Tells the view the rate and calls it from the next frame on. Not null, and added once.
    void Add(ZView* view);
    /// Ignores a view that is not in the list.
    void Remove(ZView* view);
    /// Stops the timer while nobody sees the frames.
    void SetPaused(bool paused);
    /// Takes effect at the next frame. rate >= 1, in frames a second.
    void SetRate(std::int32_t rate);
    [[nodiscard]] std::int32_t GetRate() const { return mRate; }
    /// Returns ZWindow::kNoTimer while the timer does not run.
    [[nodiscard]] std::int64_t GetTimer() const { return mTimer; }

    /// Takes over a rate that was set; called at each frame, before CallViews.
    void UpdateRate();
    /// Calls IdleTick of every idle view, in order.
    void CallViews() const;

private:
    void UpdateTimer();
    void StopTimer();

    ZHandler& mWindow;
    ZLockedList<ZView*> mViews{"idle view list"};
    bool mPaused = false;
    std::int64_t mTimer;
    std::int32_t mRate = kDefaultRate;
    std::int32_t mRequestedRate = kDefaultRate;
};

}  // namespace orvane
