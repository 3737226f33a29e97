// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZCommandList.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/documents/ZWindowKeeper.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZMessageDocument.h"
#include "zlib/common/views/ZTooltip.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

using Message = boost::shared_ptr<const ZMessage>;

// The axis of a wheel.
constexpr std::int32_t kVertical = 1;

template <typename T>
Message messageWith(std::int32_t id, const char* field, const T& value)
{
    auto message = boost::make_shared<ZMessage>(id);
    message->Add<T>(field, value);
    return message;
}

ZPoint pointIn(const ZView& view, const ZPoint& windowPoint)
{
    return {windowPoint.x - view.GetWindowOrigin().x, windowPoint.y - view.GetWindowOrigin().y};
}

/// True for what one types, false for nothing and for what keys such as Return and Escape send.
bool isTyped(const ZString& text)
{
    constexpr char16_t kDelete = 0x7f;
    return !text.IsEmpty() && text.Chars()[0] >= u' ' && text.Chars()[0] != kDelete;
}

}  // namespace

void ZWindow::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    if (IsBlocked(*message))
        return;
    CallFilters(*message);
    switch (message->GetId()) {
    case ZCLOSE:
        return CloseByStyle();
    case ZDOCUMENTNEW:
        return TakeDocument(*message, "Document");
    case ZDOCUMENTCHANGED:
        return TakeDocument(*message, "NewDocument");
    case ZDOCUMENTCLOSED:
        return LoseDocument(message);
    case ZMODALENABLE:
    case ZMODALDISABLE:
        mModalDisabled = message->GetId() == ZMODALDISABLE;
        return SendToRoot(message);
    case ZPREFSCHANGED:
    case ZSAMPLERATECHANGED:
    case ZQTEVENT:
    case ZRELEASEMOVIE:
    case ZENABLE:
    case ZDISABLE:
    case ZMOUSEWHEEL:
        return SendToRoot(message);
    case ZMOUSEDOWN:
    case ZMOUSEDOUBLECLICK:
        return RouteClick(*message, "ClickPoint");
    case ZMOUSEUP:
        return RouteClick(*message, "UpPoint");
    case ZMOUSEMOVED:
        return RouteMove(message);
    case ZMOVED:
        mPosition = requireField<ZPoint>(*message, "MovePoint");
        return;
    case ZQUIT:
        return HandleQuit(message);
    case ZREADY:
        return OnReady();
    case ZSIZED:
        return HandleSized(*message);
    case ZTIMER:
        return HandleTimer(message);
    case ZWINMINIMIZE:
    case ZWINRESTORE:
        return SendToManager(message);
    case ZTEXTINPUT:
    case ZKEYDOWN:
        return SendToFocus(message);
    default:
        return ZHandler::HandleZMessage(std::move(message));
    }
}

bool ZWindow::IsBlocked(const ZMessage& message)
{
    // A document that closes has to be let go of in any case.
    if (mDialog || message.GetId() == ZDRAW || message.GetId() == ZDOCUMENTCLOSED)
        return false;
    const ZApp* const app = ZApp::Of(*this);
    return app && app->IsModal();
}

void ZWindow::CallFilters(const ZMessage& message)
{
    const auto [first, last] = mFilters.equal_range(message.GetId());
    std::vector<ZWindowFilter*> filters;
    for (auto entry = first; entry != last; ++entry)
        filters.push_back(entry->second);
    for (ZWindowFilter* const filter : filters)
        filter->FilterMessage(message);
}

void ZWindow::AddFilter(std::int32_t messageId, ZWindowFilter* filter)
{
    mFilters.emplace(messageId, filter);
}

void ZWindow::RemoveFilter(std::int32_t messageId, ZWindowFilter* filter)
{
    const auto [first, last] = mFilters.equal_range(messageId);
    const auto found =
        std::find_if(first, last, [filter](const auto& entry) { return entry.second == filter; });
    if (found != last)
        mFilters.erase(found);
}

void ZWindow::SendToRoot(const Message& message)
{
    const auto root = mRootView;  // outlives what it does with the message
    root->HandleZMessage(message);
}

void ZWindow::SendToCaptured(const Message& message)
{
    const auto root = mRootView;  // likewise
    mCapturedView->HandleZMessage(message);
}

void ZWindow::SendToFocus(const Message& message)
{
    if (mFocusView)
        mFocusView->HandleZMessage(message);
}

void ZWindow::SendToManager(const Message& message)
{
    ZApp* const app = ZApp::Of(*this);
    if (!mMdiChild && app && app->GetWindowManager())
        app->GetWindowManager()->HandleZMessage(message);
}

void ZWindow::HandleQuit(const Message& message)
{
    ZApplication* const app = GetApp();
    if (app && CanClose())
        app->HandleZMessage(message);
}

void ZWindow::CloseByStyle()
{
    if (mCloseStyle == CloseStyle::kHide)
        return Hide();
    ZApp* const app = ZApp::Of(*this);
    if (!app)
        return;
    if (mCloseStyle == CloseStyle::kApplication)
        return app->HandleZMessage(messageWith<ZWindow*>(ZWINDOWCLOSED, "WindowClosed", this));
    if (const auto document = findDocument(*app, mDocument))
        app->GetDocumentManager()->HandleZMessage(
            messageWith<boost::shared_ptr<ZDocument>>(ZDOCCLOSE, "Document", document));
}

void ZWindow::TakeDocument(const ZMessage& message, const char* field)
{
    ZDocument* const document = requireDocument(message, field);
    SetDocument(document);
    SendToRoot(messageWith<ZDocument*>(message.GetId(), field, document));
}

void ZWindow::LoseDocument(const Message& message)
{
    SendToRoot(message);
    const auto document = documentOf(*message, "CloseDocument");
    if (!document || *document == mDocument)
        SetDocument(nullptr);
}

void ZWindow::RouteClick(const ZMessage& message, const char* field)
{
    const auto point = requireField<ZPoint>(message, field);
    const auto mods = requireField<std::uint32_t>(message, "MouseMods");
    if (mCapturedView)
        return SendToCaptured(
            makeMouseMessage(message.GetId(), field, pointIn(*mCapturedView, point), mods));
    if (message.GetId() != ZMOUSEUP)
        SetFocusView(nullptr);
    SendToRoot(makeMouseMessage(message.GetId(), field, point, mods));
}

void ZWindow::RouteMove(const Message& message)
{
    const auto point = requireField<ZPoint>(*message, "MovePoint");
    const auto mods = requireField<std::uint32_t>(*message, "MouseMods");
    UpdateHover(point);
    if (mCapturedView)
        return SendToCaptured(
            makeMouseMessage(ZMOUSEMOVED, "MovePoint", pointIn(*mCapturedView, point), mods));
    SendToRoot(message);
}

void ZWindow::UpdateHover(const ZPoint& point)
{
    ZView* view = nullptr;
    if (!mRootView->HitTest(view, point) || !view || view == mHoverView)
        return;
    LeaveHover();
    if (!mCapturedView)
        view->HandleZMessage(
            messageWith<ZPoint>(ZMOUSEENTERED, "EnteredPoint", pointIn(*view, point)));
}

// The view is no longer the one that the pointer is over, so that it hears of it only once, and is
// entered again when the pointer comes back.
void ZWindow::LeaveHover()
{
    if (ZView* const view = std::exchange(mHoverView, nullptr))
        view->HandleZMessage(boost::make_shared<ZMessage>(ZMOUSELEFT));
}

void ZWindow::HandleSized(const ZMessage& message)
{
    const auto rect = requireField<ZRect>(message, "SizedRect");
    SetSize(rect.GetWidth(), rect.GetHeight());
    SizeChanged();
}

void ZWindow::SizeChanged()
{
    if (mOffscreenBitmap)
        MakeOffscreen();
    if (!mAttached)
        return;
    SendToRoot(messageWith<ZRect>(ZRESIZE, "ResizeRect", GetArea()));
    RedrawAll();
}

void ZWindow::HandleTimer(const Message& message)
{
    const auto id = requireField<TimerId>(*message, "TimerID");
    if (id != mFrameTimer) {
        if (!OnTimer(id))
            SendToRoot(message);
        return;
    }
    if (mFramesPerSecond != mRequestedFramesPerSecond) {
        StopFrameTimer();
        mFramesPerSecond = mRequestedFramesPerSecond;
        UpdateFrameTimer();
    }
    IdleFrame();
}

void ZWindow::NativeMouse(const ZNativeMouseEvent& event)
{
    mLastMouse = event.position;
    TellTooltip(event);
    if (event.action == ZNativeMouseEvent::kWheel)
        return HandleZMessage(
            makeWheelMessage(event.position, event.modifiers, kVertical, event.wheelNotches));
    if (mModalDisabled)
        return;
    const auto send = [&](std::int32_t id, const char* field) {
        HandleZMessage(makeMouseMessage(id, field, event.position, event.modifiers));
    };
    switch (event.action) {
    case ZNativeMouseEvent::kMove:
        return send(ZMOUSEMOVED, "MovePoint");
    case ZNativeMouseEvent::kDown:
        if (mNativeWindow)
            mNativeWindow->SetFocus();
        return send(ZMOUSEDOWN, "ClickPoint");
    case ZNativeMouseEvent::kUp:
        return send(ZMOUSEUP, "UpPoint");
    case ZNativeMouseEvent::kDoubleClick:
        return send(ZMOUSEDOUBLECLICK, "ClickPoint");
    case ZNativeMouseEvent::kLeave:
        return LeaveHover();
    case ZNativeMouseEvent::kWheel:
        return;
    }
}

void ZWindow::TellTooltip(const ZNativeMouseEvent& event)
{
    if (!mTooltip)
        return;
    const ZApp* const app = ZApp::Of(*this);
    const bool isBlocked = mModalDisabled || (app && app->IsModal() && !mDialog);
    if (event.action == ZNativeMouseEvent::kLeave || isBlocked)
        return mTooltip->Left();
    if (event.action != ZNativeMouseEvent::kMove)
        return mTooltip->MouseDown();
    // A drag goes over other views, and they have nothing to tell then.
    if (!mCapturedView)
        mTooltip->MouseMoved(event.position);
}

bool ZWindow::NativeKey(const ZNativeKeyEvent& event)
{
    if (mTooltip)
        mTooltip->MouseDown();
    if (mFocusView && event.code == kKeyTab && !event.control && !event.alt &&
        MoveFocus(event.shift))
        return true;
    if (mFocusView)
        return TypeInFocus(event);
    return !event.alt && event.code != 0 && DispatchHotKey(event);
}

bool ZWindow::MoveFocus(bool backwards)
{
    std::vector<ZView*> views = mNavigableViews.Copy();
    std::erase_if(views,
                  [this](const ZView* view) { return !view->IsVisible() && view != mFocusView; });
    if (backwards)
        std::ranges::reverse(views);
    const auto current = std::ranges::find(views, mFocusView);
    if (current == views.end() || views.size() < 2)
        return false;
    SetFocusView(current + 1 == views.end() ? views.front() : *(current + 1));
    return true;
}

bool ZWindow::TypeInFocus(const ZNativeKeyEvent& event)
{
    const auto life = GetLife();
    if (event.code != 0) {
        const auto key = boost::make_shared<ZMessage>(ZKEYDOWN);
        key->Add<std::uint8_t>("Key", event.code);
        key->Add<bool>("shift", event.shift);
        key->Add<bool>("control", event.control);
        HandleZMessage(key);
    }
    if (!life.expired() && isTyped(event.text))
        HandleZMessage(messageWith<ZString>(ZTEXTINPUT, "Text", event.text));
    return true;
}

bool ZWindow::DispatchHotKey(const ZNativeKeyEvent& event)
{
    ZApp* const app = ZApp::Of(*this);
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

void ZWindow::NativeMoved(const ZPoint& position)
{
    HandleZMessage(messageWith<ZPoint>(ZMOVED, "MovePoint", position));
}

void ZWindow::NativeSized(std::int32_t width, std::int32_t height)
{
    HandleZMessage(boost::make_shared<ZMessage>(ZWINRESTORE));
    HandleZMessage(messageWith<ZRect>(ZSIZED, "SizedRect", {0, 0, width, height}));
}

void ZWindow::NativeFocus(bool focused)
{
    if (focused)
        OnActivated();
    else
        OnDeactivated();
}

void ZWindow::NativeCloseRequested()
{
    HandleZMessage(boost::make_shared<ZMessage>(ZCLOSE));
}

void ZWindow::NativeDestroyed()
{
    EndModalRuns();
    Destroy();
}

}  // namespace orvane
