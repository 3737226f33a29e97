// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZDeviceScale.h"
#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace orvane
{

class ZContentWindow;
class ZDrawingContext;
class ZTooltipContent;
class ZView;
class ZWindow;

/// The tooltip control that all views of a window share. Each view with a tip has one tool: its
/// rectangle. The tip appears when the pointer has rested over a tool, faster when it comes from a
/// tool whose tip was shown; it disappears after a while and does not come back before the pointer
/// has left the tool. Without a window of the system it keeps its state and shows nothing.
///
/// The window reports what the pointer does; points and rectangles are in its coordinates.
/// [interface thread, with the interface lock]
class ZTooltip : public ZHandler
{
public:
    /// Microseconds until the first tip appears, until the next one does, and until a tip
    /// disappears.
    static constexpr std::int64_t kInitial = 800'000;
    static constexpr std::int64_t kReshow = 500'000;
    static constexpr std::int64_t kAutopop = 3'000'000;
    /// The longest text, in UTF-16 units.
    static constexpr std::int32_t kMaxLength = 80;

    /// The window owns the tip.
    explicit ZTooltip(ZWindow& window);
    ~ZTooltip() override;

    /// Handles ZTIMER of its own timer.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Replaces the tool that the view had. Of overlapping tools the one added last counts. The
    /// view is not owned and not null.
    void AddTool(ZView* view, const ZRect& rect);
    void RemoveTool(ZView* view);
    void MouseMoved(const ZPoint& point);
    /// Called for a button, the wheel or a key: hides the tip until the pointer comes to another
    /// tool.
    void MouseDown();
    /// Called when the pointer has left the window.
    void Left();

    [[nodiscard]] bool IsShown() const { return mState == State::kShown; }
    /// Returns the text that is shown, or was shown last.
    [[nodiscard]] const ZString& GetText() const { return mText; }
    /// Returns the period of the timer that was started last, in microseconds.
    [[nodiscard]] std::int64_t GetDelay() const { return mDelay; }
    /// Returns ZWindow::kNoTimer while no timer runs.
    [[nodiscard]] std::int64_t GetTimer() const { return mTimer; }

private:
    enum class State
    {
        kIdle,     // over no tool
        kWaiting,  // until the pointer has rested
        kShown,
        kSpent,  // over a tool whose tip has gone
    };
    struct Tool
    {
        ZView* view;
        ZRect rect;
    };

    [[nodiscard]] const Tool* FindTool(const ZPoint& point) const;
    void Wait(std::int64_t microseconds);
    void StopTimer();
    void Show();
    void Hide();
    [[nodiscard]] ZString TextOf(ZView& view) const;
    void OpenWindow();

    ZWindow& mWindow;
    std::vector<Tool> mTools;
    ZView* mView = nullptr;  // whose tool the pointer is over
    ZPoint mPoint;
    State mState = State::kIdle;
    std::int64_t mTimer;
    std::int64_t mDelay = kInitial;
    ZString mText;
    std::unique_ptr<ZTooltipContent> mContent;
    std::unique_ptr<ZContentWindow> mNative;
};

/// Returns the rectangle on the monitor for a tip of that size in units: below the pointer, or
/// above it where there is no room below. Monitor, pointer and result are in pixels.
[[nodiscard]] ZRect placeTip(const ZRect& monitor, const ZPoint& pointer, const ZPoint& size,
                             const ZDeviceScale& scale = {});

}  // namespace orvane
