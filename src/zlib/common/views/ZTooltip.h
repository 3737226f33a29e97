// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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

/// The one tip that all views of a window share. It comes when the pointer has rested over a view's
/// tool, stays for a while, and does not come again before the pointer has been elsewhere. Between
/// one tool and the next it comes faster. Where there is no window of the system it keeps its
/// state and shows nothing.
///
/// The window tells what the pointer does; all points and rectangles are the window's.
/// [interface thread, with the interface lock]
class ZTooltip : public ZHandler
{
public:
    /// Microseconds from the pointer's rest to the tip, from one tip to the next, and until a tip
    /// goes by itself.
    static constexpr std::int64_t kInitial = 800'000;
    static constexpr std::int64_t kReshow = 500'000;
    static constexpr std::int64_t kAutopop = 3'000'000;
    /// Of UTF-16 units.
    static constexpr std::int32_t kMaxLength = 80;

    /// The window owns the tip.
    explicit ZTooltip(ZWindow& window);
    ~ZTooltip() override;

    /// The timer that is running out.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// In the place of one that the view had. Of tools that overlap, the one added last counts.
    void AddTool(ZView* view, const ZRect& rect);
    void RemoveTool(ZView* view);
    void MouseMoved(const ZPoint& point);
    /// A button, the wheel or a key: the tip goes until the pointer has come to another tool.
    void MouseDown();
    /// The pointer is outside the window.
    void Left();

    [[nodiscard]] bool IsShown() const { return mState == State::kShown; }
    /// What is shown, or was last.
    [[nodiscard]] const ZString& GetText() const { return mText; }
    /// The timer that is running, ZWindow::kNoTimer without one.
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
    ZString mText;
    std::unique_ptr<ZTooltipContent> mContent;
    std::unique_ptr<ZContentWindow> mNative;
};

}  // namespace orvane
