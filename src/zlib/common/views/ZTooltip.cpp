// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZTooltip.h"

#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZContentWindow.h"
#include "zlib/common/views/ZTooltipContent.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <algorithm>
#include <cassert>
#include <string>

namespace orvane
{

namespace
{

// From the pointer's hot spot down to the tip, so that the pointer covers no text.
constexpr std::int32_t kBelowPointer = 20;
constexpr std::int32_t kAbovePointer = 4;

/// Cuts a text to a number of UTF-16 units without splitting a surrogate pair.
ZString cutTo(const ZString& text, std::int32_t length)
{
    if (text.Length() <= length)
        return text;
    const char16_t* const units = text.Chars();
    const bool splitsPair = (units[length - 1] & 0xfc00) == 0xd800;
    return ZString(std::u16string(units, static_cast<std::size_t>(length - (splitsPair ? 1 : 0))));
}

}  // namespace

ZTooltip::ZTooltip(ZWindow& window)
    : mWindow(window)
    , mTimer(ZWindow::kNoTimer)
{
}

ZTooltip::~ZTooltip()
{
    StopTimer();
}

void ZTooltip::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    std::int64_t timer = ZWindow::kNoTimer;
    if (message->GetId() != ZTIMER || !message->Find<std::int64_t>("TimerID", timer) ||
        timer != mTimer)
        return ZHandler::HandleZMessage(message);
    StopTimer();
    if (mState == State::kWaiting)
        return Show();
    Hide();
    mState = State::kSpent;
}

void ZTooltip::AddTool(ZView* view, const ZRect& rect)
{
    assert(view);
    RemoveTool(view);
    mTools.push_back({view, rect});
}

void ZTooltip::RemoveTool(ZView* view)
{
    std::erase_if(mTools, [view](const Tool& tool) { return tool.view == view; });
    if (mView == view)
        Left();
}

const ZTooltip::Tool* ZTooltip::FindTool(const ZPoint& point) const
{
    const auto found = std::find_if(mTools.rbegin(), mTools.rend(), [&point](const Tool& tool) {
        return tool.rect.Contains(point);
    });
    return found == mTools.rend() ? nullptr : &*found;
}

void ZTooltip::MouseMoved(const ZPoint& point)
{
    const bool moved = point != mPoint;
    mPoint = point;
    const Tool* const tool = FindTool(point);
    if (!tool)
        return Left();
    if (tool->view != mView) {
        const bool wasShown = mState == State::kShown;
        Hide();
        mView = tool->view;
        mState = State::kWaiting;
        return Wait(wasShown ? kReshow : kInitial);
    }
    // A tip appears only for a pointer at rest.
    if (mState == State::kWaiting && moved)
        Wait(mDelay);
}

void ZTooltip::MouseDown()
{
    StopTimer();
    Hide();
    if (mView)
        mState = State::kSpent;
}

void ZTooltip::Left()
{
    StopTimer();
    Hide();
    mView = nullptr;
    mState = State::kIdle;
}

void ZTooltip::Wait(std::int64_t microseconds)
{
    assert(microseconds > 0);
    StopTimer();
    mDelay = microseconds;
    mTimer = mWindow.StartTimer(microseconds, *this);
}

void ZTooltip::StopTimer()
{
    if (mTimer != ZWindow::kNoTimer)
        mWindow.StopTimer(mTimer);
    mTimer = ZWindow::kNoTimer;
}

void ZTooltip::Show()
{
    assert(mView && mState == State::kWaiting);
    mText = TextOf(*mView);
    mState = State::kShown;
    OpenWindow();
    Wait(kAutopop);
}

ZString ZTooltip::TextOf(ZView& view) const
{
    const ZPoint& origin = view.GetWindowOrigin();
    const ZString text = view.GetTooltipText({mPoint.x - origin.x, mPoint.y - origin.y});
    return cutTo(text.IsEmpty() ? ZString(mWindow.GetName()) : text, kMaxLength);
}

void ZTooltip::OpenWindow()
{
    const ZNativeWindow* const owner = mWindow.GetNativeWindow();
    if (!owner)
        return;
    mContent = std::make_unique<ZTooltipContent>(mText);
    const ZDeviceScale& scale = mWindow.GetDeviceScale();
    const ZPoint pointer = mWindow.ToScreen(mPoint);
    mNative = ZContentWindow::Create(
        {.kind = ZNativeWindow::Kind::kPopup,
         .parent = owner->GetHandle(),
         .rect = placeTip(owner->GetMonitor(pointer), pointer, mContent->GetSize(), scale),
         .title = {}},
        *mContent, scale);
    if (mNative)
        mNative->Show();
}

void ZTooltip::Hide()
{
    mNative.reset();
    mContent.reset();
}

ZRect placeTip(const ZRect& monitor, const ZPoint& pointer, const ZPoint& size,
               const ZDeviceScale& scale)
{
    assert(size.x > 0 && size.y > 0);
    const auto [width, height] = scale.ToPixels(size);
    const auto [above, down] = scale.ToPixels(ZPoint{kAbovePointer, kBelowPointer});
    const ZRect below = ZRect{0, 0, width, height}.Offset(pointer.x, pointer.y + down);
    const bool fits = below.bottom <= monitor.bottom;
    return keptOn(monitor, fits ? below : below.Offset(0, -height - down - above));
}

}  // namespace orvane
