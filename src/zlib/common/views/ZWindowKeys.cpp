// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowKeys.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZCommandList.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

/// False for an empty text and for the control characters of Return, Escape and the like.
bool isTyped(const ZString& text)
{
    constexpr char16_t kDelete = 0x7f;
    return !text.IsEmpty() && text.Chars()[0] >= u' ' && text.Chars()[0] != kDelete;
}

bool isTab(const ZNativeKeyEvent& event)
{
    return event.Is(kKeyTab);
}

ZRect placeInWindow(const ZView& view)
{
    const ZPoint origin = view.GetWindowOrigin();
    return view.GetFrame().Offset(origin.x, origin.y);
}

/// Orders views by rows from top to bottom, and from left to right in each. A row begins with the
/// highest of the views that are left; those whose middles are above its lower edge belong to it.
void sortForReading(std::vector<ZView*>& views)
{
    std::ranges::stable_sort(views, {}, [](const ZView* view) { return placeInWindow(*view).top; });
    for (auto row = views.begin(); row != views.end();) {
        const std::int32_t bottom = placeInWindow(**row).bottom;
        const auto end = std::find_if(row + 1, views.end(), [bottom](const ZView* view) {
            const ZRect place = placeInWindow(*view);
            return place.top + place.GetHeight() / 2 >= bottom;
        });
        std::stable_sort(row, end, [](const ZView* one, const ZView* other) {
            return placeInWindow(*one).left < placeInWindow(*other).left;
        });
        row = end;
    }
}

}  // namespace

ZWindowKeys::ZWindowKeys(ZWindow& window)
    : mWindow(window)
    , mRing(window)
{
}

bool ZWindowKeys::Dispatch(const ZNativeKeyEvent& event)
{
    if (isTab(event) && MoveFocus(event.shift))
        return true;
    const bool isWanted = Wants(event);
    const bool leaves = LeavesRing(event);
    const auto life = mWindow.GetLife();
    if (mFocus)
        TypeInFocus(event);
    // The key may have closed the window.
    if (life.expired())
        return true;
    if (leaves)
        LeaveRing();
    return isWanted || (!event.alt && event.code != 0 && DispatchHotKey(event));
}

bool ZWindowKeys::Wants(const ZNativeKeyEvent& event) const
{
    if (isTab(event) && !FindStops().empty())
        return true;
    return mFocus && (mFocus->WantsKey(event) || LeavesRing(event));
}

bool ZWindowKeys::LeavesRing(const ZNativeKeyEvent& event) const
{
    return mHasRing && event.code == kKeyEscape && !mFocus->WantsKey(event);
}

void ZWindowKeys::SetFocus(ZView* view)
{
    Give(view, false);
}

void ZWindowKeys::Give(ZView* view, bool withRing)
{
    assert(ZInterfaceLock::IsHeld());
    ZView* const before = std::exchange(mFocus, view);
    mHasRing = withRing && view;
    UpdateRing();
    if (view == before)
        return;
    if (before) {
        before->SetFocus(false);
        before->Invalidate();
    }
    if (view) {
        view->SetFocus(true);
        view->Invalidate();
    }
}

void ZWindowKeys::LeaveRing()
{
    if (mHasRing)
        Give(nullptr, false);
}

void ZWindowKeys::UpdateRing()
{
    if (!mHasRing || !mFocus)
        return mRing.Place({});
    const ZPoint origin = mFocus->GetWindowOrigin();
    mRing.Place(mFocus->GetFocusRect().Offset(origin.x, origin.y));
}

void ZWindowKeys::AddNavigable(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    assert(view);
    mNavigable.Append(view);
}

void ZWindowKeys::Forget(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    mNavigable.Remove(view);
    if (mFocus == view)
        mFocus = nullptr;
    mHasRing = mHasRing && mFocus;
    UpdateRing();
}

std::vector<ZView*> ZWindowKeys::FindStops() const
{
    std::vector<ZView*> views = mNavigable.Copy();
    std::erase_if(views, [this](const ZView* view) {
        return view != mFocus && (!view->IsVisible() || !view->TakesFocus());
    });
    sortForReading(views);
    return views;
}

/// Moves to the next or the previous stop, from the last on to the first and from no focus to the
/// end that comes next. False when there is no other.
bool ZWindowKeys::MoveFocus(bool backwards)
{
    std::vector<ZView*> views = FindStops();
    if (backwards)
        std::ranges::reverse(views);
    const auto current = std::ranges::find(views, mFocus);
    const bool isStop = current != views.end();
    if (views.empty() || (mFocus && !isStop) || (isStop && views.size() < 2))
        return false;
    Give(!isStop || current + 1 == views.end() ? views.front() : *(current + 1), true);
    return true;
}

void ZWindowKeys::TypeInFocus(const ZNativeKeyEvent& event)
{
    const auto life = mWindow.GetLife();
    if (event.code != 0) {
        const auto key = boost::make_shared<ZMessage>(ZKEYDOWN);
        key->Add<std::uint8_t>("Key", event.code);
        key->Add<bool>("shift", event.shift);
        key->Add<bool>("control", event.control);
        key->Add<bool>("alt", event.alt);
        mWindow.HandleZMessage(key);
    }
    // The key may have closed the window.
    if (life.expired() || !isTyped(event.text))
        return;
    const auto text = boost::make_shared<ZMessage>(ZTEXTINPUT);
    text->Add<ZString>("Text", event.text);
    mWindow.HandleZMessage(text);
}

bool ZWindowKeys::DispatchHotKey(const ZNativeKeyEvent& event)
{
    ZApp* const app = ZApp::Of(mWindow);
    if (!app || app->IsModal() || !app->HasCommandList())
        return false;
    const auto message = boost::make_shared<ZMessage>(ZKEYCOMMAND);
    message->Add<std::int32_t>("hotkey", event.code);
    message->Add<bool>("shift", event.shift);
    message->Add<bool>("control", event.control);
    ZCommandList& commands = *app->GetCommandList();
    if (!commands.HasKeyCommand(*message))
        return false;
    commands.HandleZMessage(message);
    return true;
}

}  // namespace orvane
