// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindow.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/documents/ZWindowKeeper.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/objects/ZXMLGeometry.h"
#include "zlib/common/views/ZMessageDocument.h"
#include "zlib/common/views/ZTooltip.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZWindowManager.h"
#include "zlib/common/views/ZWindowTimers.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

using Message = boost::shared_ptr<const ZMessage>;

constexpr std::int32_t kVerticalWheel = 1;

ZWindow::TitleStyle titleStyleOf(const ZXMLElement& xml)
{
    if (xml.AttributeIs("titlestyle", "app-doc"))
        return ZWindow::TitleStyle::kApplicationAndDocument;
    if (xml.AttributeIs("titlestyle", "doc"))
        return ZWindow::TitleStyle::kDocument;
    if (xml.AttributeIs("titlestyle", "app"))
        return ZWindow::TitleStyle::kApplication;
    return ZWindow::TitleStyle::kTitle;
}

ZWindow::CloseStyle closeStyleOf(const ZXMLElement& xml)
{
    if (xml.AttributeIs("closestyle", "app"))
        return ZWindow::CloseStyle::kApplication;
    if (xml.AttributeIs("closestyle", "doc"))
        return ZWindow::CloseStyle::kDocument;
    if (xml.AttributeIs("closestyle", "hide") || xml.GetAttributeBool("tool"))
        return ZWindow::CloseStyle::kHide;
    return ZWindow::CloseStyle::kApplication;
}

}  // namespace

ZWindow::ZWindow(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZHandler(xml, application)
    , mContext(boost::make_shared<ZDrawingContext>())
    , mPicture(mContext)
    , mRootView(boost::make_shared<ZView>("main", GetLooper()))
    , mPointer(*mRootView)
    , mKeys(*this)
    , mFrames(*this)
{
    // Timers of this platform have one fixed resolution, so none is requested here.
    ReadAttributes(*xml);
    if (const auto changes = xml->GetChild("documentchange"))
        AddDocumentTypes(*changes);
    BuildViews(*xml);
    if (const auto managers = xml->GetChild("windowmanagers"))
        AddWindowManagers(*managers);
    ComposeTitle();
}

ZWindow::~ZWindow()
{
    SetBlocking(false);
    mNativeWindow.reset();
    // Views that are handling a message may outlive the window and the document, so all of them
    // leave both here.
    mPointer.SetCaptured(nullptr);
    mRootView->HandleZMessage(boost::make_shared<ZMessage>(ZDOCUMENTCLOSED));
    mRootView->HandleZMessage(boost::make_shared<ZMessage>(ZDETACHED));
    mRootView.reset();
}

void ZWindow::ReadAttributes(const ZXMLElement& xml)
{
    const auto bounds = xml.GetChild("rect");
    if (!bounds)
        throw ZException("XML Parser error: No bounds information found in Window!\n");
    const ZRect rect = readRect(*bounds);
    mFirstPosition = mPosition = {rect.left, rect.top};
    SetSize(rect.GetWidth(), rect.GetHeight());
    mFirstSize = mSize;
    mChild = xml.GetAttributeBool("child");
    mDialog = xml.GetAttributeBool("dialog");
    mMdiChild = xml.GetAttributeBool("mdichild");
    mResizable = !xml.AttributeIs("resize", "false");
    mVisibleWhenCreated = !xml.AttributeIs("visiblewhencreated", "false");
    mTitleAttribute = ZString(xml.GetAttribute("title"));
    mTitleStyle = titleStyleOf(xml);
    mCloseStyle = closeStyleOf(xml);
    const std::int32_t maxFrames = xml.GetInt32("maxfps");
    mMaxFramesPerSecond = maxFrames < 1 ? kDefaultMaxFrames : maxFrames;
}

void ZWindow::AddDocumentTypes(const ZXMLElement& xml)
{
    if (!xml.IsNamed("documentchange"))
        return ZTrace::Write(
            "\nError: ZWindowType::AddDocumentTypes,  XML tag is not a <documentchange>.\n");
    for (std::int32_t i = 0; i < xml.GetChildCount(); ++i)
        mDocumentChanges.Append(std::make_shared<const ZDocumentMap>(*xml.GetChild(i)));
}

void ZWindow::BuildViews(const ZXMLElement& xml)
{
    mRootView->SetStretchMask(ZViewLayout::kStretchAll);
    mRootView->SetBoundsSize(mSize.x, mSize.y);
    mRootView->SetContext(mContext);
    mRootView->LayoutSubviews(xml);
}

void ZWindow::AddWindowManagers(const ZXMLElement& xml)
{
    if (!xml.IsNamed("windowmanagers"))
        return ZTrace::Write(
            "\nError: ZWindow::AddWindowManagers,  XML tag is not a <windowmanagers>.\n");
    auto* const application = dynamic_cast<ZApplication*>(GetLooper());
    for (std::int32_t i = 0; i < xml.GetChildCount(); ++i)
        AddWindowManager(std::make_unique<ZWindowManager>(xml.GetChild(i), application, this));
}

bool ZWindow::IsKindOf(std::string_view className) const
{
    return className == "ZWindowClass" || ZHandler::IsKindOf(className);
}

const char* ZWindow::GetClassName() const
{
    return "ZWindowClass";
}

bool ZWindow::Create(ZWindow* parent, ZNativeHandle nativeParent)
{
    assert(ZInterfaceLock::IsHeld());
    if (GetArea().IsEmpty())
        return false;
    // Not at the place that the window before was moved to.
    mPosition = mFirstPosition;
    auto native = ZNativeWindow::Create(NativeSettings(parent, nativeParent), *this);
    if (!native)
        return false;
    if (mNativeWindow)
        EndModalRuns();
    ReleaseCapture();
    mPointer.LeaveHover();
    mNativeWindow = std::move(native);
    MakeOffscreen();
    SetBlocking(mDialog);
    return true;
}

ZNativeWindow::Settings ZWindow::NativeSettings(const ZWindow* parent,
                                                ZNativeHandle nativeParent) const
{
    ZNativeWindow::Settings settings;
    settings.kind = mChild ? ZNativeWindow::Kind::kChild : ZNativeWindow::Kind::kDialog;
    settings.parent = nativeParent;
    if (nativeParent == 0 && parent && parent->mNativeWindow)
        settings.parent = parent->mNativeWindow->GetHandle();
    settings.rect = GetPlace();
    settings.title = mChild ? ZString() : mTitle;
    settings.modal = mDialog;
    settings.resizable = mResizable;
    return settings;
}

void ZWindow::Destroy()
{
    assert(ZInterfaceLock::IsHeld());
    SetBlocking(false);
    HideTooltip();
    ReleaseCapture();
    mPointer.LeaveHover();
    mFrames.SetPaused(true);
    mNativeWindow.reset();
    mPicture.Release();
}

// Menus and dialogs above the window go with it; without this a dialog would wait for an answer
// that cannot come any more.
void ZWindow::EndModalRuns()
{
    if (ZApp* const app = ZApp::Of(*this))
        app->EndModalRuns();
}

void ZWindow::Show()
{
    assert(ZInterfaceLock::IsHeld());
    AttachViews();
    mFrames.SetPaused(false);
    if (!mNativeWindow)
        return;
    SetBlocking(mDialog);
    mNativeWindow->SetRect(GetPlace());
    mNativeWindow->Show();
    mNativeWindow->Update();
}

void ZWindow::Hide()
{
    assert(ZInterfaceLock::IsHeld());
    SetBlocking(false);
    HideTooltip();
    ReleaseCapture();
    mPointer.LeaveHover();
    // Hosts keep many hidden windows, and their frames would be computed for nobody.
    mFrames.SetPaused(true);
    if (mNativeWindow)
        mNativeWindow->Hide();
}

bool ZWindow::IsVisible() const
{
    return mNativeWindow && mNativeWindow->IsVisible();
}

void ZWindow::AttachViews()
{
    assert(ZInterfaceLock::IsHeld());
    if (mAttached)
        return;
    mRootView->HandleZMessage(makeMessage<ZWindow*>(ZATTACHED, "AttachedWindow", this));
    OnReady();
    mAttached = true;
}

void ZWindow::SetScale(double scale)
{
    assert(ZInterfaceLock::IsHeld());
    assert(scale > 0.0);
    SetSize(std::round(mFirstSize.x * scale), std::round(mFirstSize.y * scale));
    if (mNativeWindow)
        mNativeWindow->SetRect(GetPlace());
    SizeChanged();
}

void ZWindow::SetSize(double width, double height)
{
    assert(ZInterfaceLock::IsHeld());
    // No picture is larger than kMaxSide.
    const auto side = [](double length) {
        return static_cast<std::int32_t>(std::clamp(length, 0.0, double{ZImage::kMaxSide}));
    };
    mSize = {side(width), side(height)};
}

ZRect ZWindow::GetPlace() const
{
    return GetArea().Offset(mPosition.x, mPosition.y);
}

ZPoint ZWindow::ToScreen(const ZPoint& point) const
{
    return mNativeWindow ? mNativeWindow->ToScreen(point) : point;
}

void ZWindow::SetDocument(ZDocument* document)
{
    assert(ZInterfaceLock::IsHeld());
    mDocument = document;
    ComposeTitle();
}

void ZWindow::ComposeTitle()
{
    mTitle = TitleText();
    if (mNativeWindow && !mChild)  // the host gives its own window a title
        mNativeWindow->SetTitle(mTitle);
}

ZString ZWindow::TitleText()
{
    const ZString document = mDocument ? mDocument->GetTitle() : ZString();
    if (mTitleStyle == TitleStyle::kTitle)
        return mTitleAttribute;
    if (mTitleStyle == TitleStyle::kDocument)
        return document;
    const ZApp* const app = ZApp::Of(*this);
    ZString title = app ? app->GetTitle() : ZString();
    if (mTitleStyle == TitleStyle::kApplicationAndDocument && !document.IsEmpty()) {
        title.Append(" - ");
        title.Append(document);
    }
    return title;
}

const ZDocumentMap* ZWindow::FindDocumentMap(const ZDocument& document) const
{
    const auto maps = mDocumentChanges.Copy();
    const auto found =
        std::ranges::find_if(maps, [&](const auto& map) { return map->Matches(document); });
    return found == maps.end() ? nullptr : found->get();  // the list never shrinks
}

void ZWindow::AddWindowManager(std::unique_ptr<ZWindowManager> manager)
{
    assert(ZInterfaceLock::IsHeld());
    assert(manager);
    mWindowManagers.Append(std::move(manager));
}

void ZWindow::RemoveWindowManager(ZWindowManager* manager)
{
    assert(ZInterfaceLock::IsHeld());
    for (const auto& entry : mWindowManagers.Copy())
        if (entry.get() == manager)
            mWindowManagers.Remove(entry);
}

std::vector<ZWindowManager*> ZWindow::GetWindowManagers() const
{
    std::vector<ZWindowManager*> managers;
    for (const auto& manager : mWindowManagers.Copy())
        managers.push_back(manager.get());
    return managers;
}

void ZWindow::SetFocusView(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    mKeys.SetFocus(view);
}

void ZWindow::SetCapturedView(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    if (view == mPointer.GetCaptured())
        return;
    mPointer.SetCaptured(view);
    if (mNativeWindow)
        mNativeWindow->SetCapture(view != nullptr);
}

void ZWindow::ReleaseCapture()
{
    assert(ZInterfaceLock::IsHeld());
    // Through the view, which ends its edit towards the host: last, since the host may do anything.
    if (ZView* const view = mPointer.GetCaptured()) {
        view->OnCaptureLost();
        view->SetMouseCapture(false, true);
    }
    SetCapturedView(nullptr);
}

void ZWindow::ForgetView(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    assert(view);
    mFrames.Remove(view);
    mKeys.Forget(view);
    RemoveTool(view);
    if (mPointer.GetHover() == view)
        mPointer.SetHover(nullptr);
    if (mPointer.GetCaptured() == view)
        SetCapturedView(nullptr);
}

void ZWindow::AddNavigableView(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    mKeys.AddNavigable(view);
}

void ZWindow::AddTool(ZView* view, const ZRect& rect)
{
    assert(ZInterfaceLock::IsHeld());
    if (!mTooltip)
        mTooltip = std::make_unique<ZTooltip>(*this);
    mTooltip->AddTool(view, rect);
}

void ZWindow::HideTooltip()
{
    if (mTooltip)
        mTooltip->Left();
}

void ZWindow::RemoveTool(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    if (mTooltip)
        mTooltip->RemoveTool(view);
}

ZWindow::TimerId ZWindow::StartTimer(std::int64_t microseconds, ZHandler& handler)
{
    return ZWindowTimers::Start(microseconds, handler);
}

void ZWindow::StopTimer(TimerId id)
{
    ZWindowTimers::Stop(id);
}

void ZWindow::AddIdleView(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    mFrames.Add(view);
}

void ZWindow::RemoveIdleView(ZView* view)
{
    assert(ZInterfaceLock::IsHeld());
    mFrames.Remove(view);
}

void ZWindow::SetFramesPerSecond(std::int32_t rate)
{
    mFrames.SetRate(rate);
}

void ZWindow::IdleFrame()
{
    mFrames.CallViews();
}

void ZWindow::SetGraphics(ZGraphics* graphics)
{
    mContext->SetGraphics(graphics);
}

void ZWindow::MakeOffscreen()
{
    mPicture.Make(mSize);
    mRootView->MarkSubtreeDirty();
}

void ZWindow::Invalidate(const ZRect& rect)
{
    assert(ZInterfaceLock::IsHeld());
    mPicture.NoteInvalid(rect);
    if (mNativeWindow)
        mNativeWindow->Invalidate(rect);
}

void ZWindow::RedrawAll()
{
    Invalidate(GetArea());
    mRootView->MarkSubtreeDirty();
}

void ZWindow::Update()
{
    assert(ZInterfaceLock::IsHeld());
    if (mNativeWindow)
        mNativeWindow->Update();
}

void ZWindow::NativePaint(const ZRect& update)
{
    if (!mPicture.Get())
        return;
    const bool isWhole = update.Union(mRootView->GetBounds()) == update;
    if (mPicture.TakeUncovered(update) || isWhole)
        mRootView->MarkSubtreeDirty();
    Paint(update);
    if (mNativeWindow)
        mNativeWindow->Present(*mPicture.Get()->GetNative(), update);
}

void ZWindow::Paint(const ZRect& rect)
{
    assert(ZInterfaceLock::IsHeld());
    mRootView->DrawView(rect);
}

const ZBitmap& ZWindow::RenderOffscreen()
{
    if (!mPicture.Get())
        MakeOffscreen();
    if (!mPicture.Get())
        throw ZException(ZException::kGeneral,
                         "Window '" + GetName() + "' has no size to be drawn in");
    AttachViews();
    IdleFrame();
    mRootView->MarkSubtreeDirty();
    Paint(GetArea());
    return *mPicture.Get();
}

void ZWindow::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    assert(ZInterfaceLock::IsHeld());
    if (IsDropped(*message))
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

bool ZWindow::IsDropped(const ZMessage& message)
{
    // Every window has to release a document that closes.
    const std::int32_t id = message.GetId();
    return id != ZDRAW && id != ZDOCUMENTCLOSED && FindBlockingDialog();
}

ZWindow* ZWindow::FindBlockingDialog()
{
    const ZApp* const app = ZApp::Of(*this);
    return app && !mDialog ? app->GetModalWindow() : nullptr;
}

/// False when no dialog blocks the window.
bool ZWindow::PassFocusToDialog()
{
    ZWindow* const dialog = FindBlockingDialog();
    if (dialog && dialog->mNativeWindow)
        dialog->mNativeWindow->SetFocus();
    return dialog != nullptr;
}

void ZWindow::SetBlocking(bool blocking)
{
    ZApp* const app = blocking == mBlocking ? nullptr : ZApp::Of(*this);
    if (!app)
        return;
    mBlocking = blocking;
    if (blocking)
        app->BeginModal(*this);
    else
        app->EndModal(*this);
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
    assert(ZInterfaceLock::IsHeld());
    assert(filter);
    mFilters.emplace(messageId, filter);
}

void ZWindow::RemoveFilter(std::int32_t messageId, ZWindowFilter* filter)
{
    assert(ZInterfaceLock::IsHeld());
    const auto [first, last] = mFilters.equal_range(messageId);
    const auto found =
        std::find_if(first, last, [filter](const auto& entry) { return entry.second == filter; });
    if (found != last)
        mFilters.erase(found);
}

void ZWindow::SendToRoot(const Message& message)
{
    const auto root = mRootView;  // handling the message may release the window
    root->HandleZMessage(message);
}

void ZWindow::SendToFocus(const Message& message)
{
    if (ZView* const view = mKeys.GetFocus())
        view->HandleZMessage(message);
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
        return app->HandleZMessage(makeMessage<ZWindow*>(ZWINDOWCLOSED, "WindowClosed", this));
    if (const auto document = findDocument(*app, mDocument))
        app->GetDocumentManager()->HandleZMessage(
            makeMessage<boost::shared_ptr<ZDocument>>(ZDOCCLOSE, "Document", document));
}

void ZWindow::TakeDocument(const ZMessage& message, const char* field)
{
    ZDocument* const document = requireDocument(message, field);
    SetDocument(document);
    SendToRoot(makeMessage<ZDocument*>(message.GetId(), field, document));
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
    if (!mPointer.GetCaptured() && message.GetId() != ZMOUSEUP)
        SetFocusView(nullptr);
    const auto root = mRootView;  // handling the message may release the window
    mPointer.RouteClick(message, field);
}

void ZWindow::RouteMove(const Message& message)
{
    const auto root = mRootView;  // as above
    mPointer.RouteMove(message);
}

void ZWindow::HandleSized(const ZMessage& message)
{
    const auto rect = requireField<ZRect>(message, "SizedRect");
    SetSize(rect.GetWidth(), rect.GetHeight());
    SizeChanged();
}

void ZWindow::SizeChanged()
{
    if (mPicture.Get())
        MakeOffscreen();
    if (!mAttached)
        return;
    SendToRoot(makeMessage<ZRect>(ZRESIZE, "ResizeRect", GetArea()));
    RedrawAll();
}

void ZWindow::HandleTimer(const Message& message)
{
    const auto id = requireField<TimerId>(*message, "TimerID");
    if (id == mFrames.GetTimer()) {
        mFrames.UpdateRate();
        IdleFrame();
    } else if (!OnTimer(id)) {
        SendToRoot(message);
    }
}

void ZWindow::NativeMouse(const ZNativeMouseEvent& event)
{
    mLastMouse = event.position;
    TellTooltip(event);
    if (event.action == ZNativeMouseEvent::kWheel)
        return HandleZMessage(
            makeWheelMessage(event.position, event.modifiers, kVerticalWheel, event.wheelNotches));
    if (mModalDisabled)
        return;
    const auto send = [&](std::int32_t id, const char* field) {
        HandleZMessage(makeMouseMessage(id, field, event.position, event.modifiers));
    };
    switch (event.action) {
    case ZNativeMouseEvent::kMove:
        return send(ZMOUSEMOVED, "MovePoint");
    case ZNativeMouseEvent::kDown:
        if (!PassFocusToDialog() && mNativeWindow)
            mNativeWindow->SetFocus();
        return send(ZMOUSEDOWN, "ClickPoint");
    case ZNativeMouseEvent::kUp:
        return send(ZMOUSEUP, "UpPoint");
    case ZNativeMouseEvent::kDoubleClick:
        return send(ZMOUSEDOUBLECLICK, "ClickPoint");
    case ZNativeMouseEvent::kLeave:
        return mPointer.LeaveHover();
    case ZNativeMouseEvent::kWheel:
        return;
    }
}

void ZWindow::TellTooltip(const ZNativeMouseEvent& event)
{
    if (!mTooltip)
        return;
    const bool isBlocked = mModalDisabled || FindBlockingDialog();
    if (event.action == ZNativeMouseEvent::kLeave || isBlocked)
        return mTooltip->Left();
    if (event.action != ZNativeMouseEvent::kMove)
        return mTooltip->MouseDown();
    // While a view is dragged, the views that the pointer passes show no tips.
    if (!mPointer.GetCaptured())
        mTooltip->MouseMoved(event.position);
}

bool ZWindow::NativeKey(const ZNativeKeyEvent& event)
{
    if (mTooltip)
        mTooltip->MouseDown();
    // A key that comes here below a dialog is neither the host's nor a command.
    return PassFocusToDialog() || mKeys.Dispatch(event);
}

void ZWindow::NativeMoved(const ZPoint& position)
{
    HandleZMessage(makeMessage<ZPoint>(ZMOVED, "MovePoint", position));
}

void ZWindow::NativeSized(std::int32_t width, std::int32_t height)
{
    HandleZMessage(boost::make_shared<ZMessage>(ZWINRESTORE));
    HandleZMessage(makeMessage(ZSIZED, "SizedRect", ZRect{0, 0, width, height}));
}

void ZWindow::NativeFocus(bool focused)
{
    if (focused && PassFocusToDialog())
        return;
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
