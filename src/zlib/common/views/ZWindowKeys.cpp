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

}  // namespace

ZWindowKeys::ZWindowKeys(ZWindow& window)
    : mWindow(window)
{
}

bool ZWindowKeys::Dispatch(const ZNativeKeyEvent& event)
{
    if (!mFocus)
        return !event.alt && event.code != 0 && DispatchHotKey(event);
    const bool isTab = event.code == kKeyTab && !event.control && !event.alt;
    if (!isTab || !MoveFocus(event.shift))
        TypeInFocus(event);
    return true;
}

void ZWindowKeys::SetFocus(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    if (view == mFocus)
        return;
    ZView* const before = std::exchange(mFocus, view);
    if (before) {
        before->SetFocus(false);
        before->Invalidate();
    }
    if (view) {
        view->SetFocus(true);
        view->Invalidate();
    }
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
}

/// Moves to the next or the previous visible navigable view, from the last on to the first. False
/// when there is no other.
bool ZWindowKeys::MoveFocus(bool backwards)
{
    std::vector<ZView*> views = mNavigable.Copy();
    std::erase_if(views,
                  [this](const ZView* view) { return !view->IsVisible() && view != mFocus; });
    if (backwards)
        std::ranges::reverse(views);
    const auto current = std::ranges::find(views, mFocus);
    if (current == views.end() || views.size() < 2)
        return false;
    SetFocus(current + 1 == views.end() ? views.front() : *(current + 1));
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
