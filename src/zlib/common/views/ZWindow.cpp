// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindow.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/documents/ZWindowKeeper.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZMessageDocument.h"
#include "zlib/common/views/ZTooltip.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZWindowManager.h"
#include "zlib/common/views/ZWindowMenu.h"
#include "zlib/common/views/ZWindowTimers.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

using Message = boost::shared_ptr<const ZMessage>;

}  // namespace

ZWindow::ZWindow(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZHandler(xml, application)
    , mAttributes(*xml)
    , mPlace(*xml)
    , mFold(*xml)
    , mModality(*this)
    , mContext(boost::make_shared<ZDrawingContext>())
    , mPicture(mContext)
    , mRootView(boost::make_shared<ZView>("main", GetLooper()))
    , mPointer(*mRootView)
    , mKeys(*this)
    , mFrames(*this)
    , mTooltip(*this)
    , mValueTip(*this)
{
    // Timers of this platform have one fixed resolution, so none is requested here.
    if (mAttributes.dialog)
        mModality.MakeDialog();
    if (const auto changes = xml->GetChild("documentchange"))
        AddDocumentTypes(*changes);
    BuildViews(*xml);
    MakeContextMenu(*xml);
    if (const auto managers = xml->GetChild("windowmanagers"))
        AddWindowManagers(*managers);
    ComposeTitle();
}

ZWindow::~ZWindow()
{
    mModality.Unblock();
    mNativeWindow.reset();
    // Views that are handling a message may outlive the window and the document, so all of them
    // leave both here.
    mPointer.SetCaptured(nullptr);
    mRootView->HandleZMessage(boost::make_shared<ZMessage>(ZDOCUMENTCLOSED));
    mRootView->HandleZMessage(boost::make_shared<ZMessage>(ZDETACHED));
    mRootView.reset();
}

void ZWindow::AddDocumentTypes(const ZXMLElement& xml)
{
    if (!xml.IsNamed("documentchange"))
        return ZTrace::Write(
            "\nError: ZWindowType::AddDocumentTypes,  XML tag is not a <documentchange>.\n");
    mDocumentChanges.Add(xml);
}

void ZWindow::BuildViews(const ZXMLElement& xml)
{
    mRootView->SetStretchMask(ZViewLayout::kStretchAll);
    mRootView->SetBoundsSize(GetWidth(), GetHeight());
    mRootView->SetContext(mContext);
    mRootView->LayoutSubviews(xml);
}

void ZWindow::MakeContextMenu(const ZXMLElement& xml)
{
    auto* const application = dynamic_cast<ZApplication*>(GetLooper());
    const auto menu = application ? xml.GetChild("contextmenu") : nullptr;
    if (!menu)
        return;
    mContextMenu = boost::dynamic_pointer_cast<ZWindowMenu>(
        application->GetClassRegistry().Create(menu->GetAttributeOr("class", ""), menu));
    if (!mContextMenu)
        throw ZException("The context menu of window '" + GetName() + "' is of another class");
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
    if (mPlace.GetArea().IsEmpty())
        return false;
    // Not at the place that the window before was moved to, nor in the size that it was given.
    mPlace.ResetPosition();
    TakeOwnSize(mFold.IsWanted(ZApp::Of(*this)));
    const ZDeviceScale scale = std::exchange(mScale, FindScale(parent));
    auto native = ZNativeWindow::Create(NativeSettings(parent, nativeParent), *this);
    if (!native) {
        mScale = scale;
        return false;
    }
    if (mNativeWindow)
        mModality.EndRuns();
    ReleaseCapture();
    mPointer.LeaveHover();
    mNativeWindow = std::move(native);
    MakeOffscreen();
    mModality.Block();
    return true;
}

void ZWindow::Destroy()
{
    assert(ZInterfaceLock::IsHeld());
    mModality.Unblock();
    mTooltip.Hide();
    mKeys.LeaveRing();
    ReleaseCapture();
    mPointer.LeaveHover();
    mFrames.SetPaused(true);
    mNativeWindow.reset();
    mPicture.Release();
}

void ZWindow::Show()
{
    assert(ZInterfaceLock::IsHeld());
    AttachViews();
    mFrames.SetPaused(false);
    if (!mNativeWindow)
        return;
    mModality.Block();
    mNativeWindow->SetRect(GetPixelRect());
    mNativeWindow->Show();
    mNativeWindow->Update();
}

void ZWindow::Hide()
{
    assert(ZInterfaceLock::IsHeld());
    mModality.Unblock();
    mTooltip.Hide();
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
    try {
        mRootView->HandleZMessage(makeMessage<ZWindow*>(ZATTACHED, "AttachedWindow", this));
        OnReady();
    } catch (...) {
        // The next attempt attaches all views, so none may be in the lists of this window.
        mRootView->HandleZMessage(makeMessage<ZWindow*>(ZDETACHED, "DetachedWindow", this));
        throw;
    }
    mAttached = true;
}

void ZWindow::SetScale(double scale)
{
    assert(ZInterfaceLock::IsHeld());
    mPlace.Scale(scale);
    if (mNativeWindow)
        mNativeWindow->SetRect(GetPixelRect());
    SizeChanged();
}

void ZWindow::SetDocument(ZDocument* document)
{
    assert(ZInterfaceLock::IsHeld());
    mDocument = document;
    ComposeTitle();
}

void ZWindow::ComposeTitle()
{
    const ZApp* const app = ZApp::Of(*this);
    mTitle = mAttributes.ComposeTitle(app ? app->GetTitle() : ZString(),
                                      mDocument ? mDocument->GetTitle() : ZString());
    if (mNativeWindow && !mAttributes.child)  // the host gives its own window a title
        mNativeWindow->SetTitle(mTitle);
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
    mValueTip.Hide(*view);
    RemoveTool(view);
    if (mPointer.GetHover() == view)
        mPointer.SetHover(nullptr);
    if (mPointer.GetCaptured() == view)
        SetCapturedView(nullptr);
}

ZWindow::TimerId ZWindow::StartTimer(std::int64_t microseconds, ZHandler& handler)
{
    return ZWindowTimers::Start(microseconds, handler);
}

void ZWindow::StopTimer(TimerId id)
{
    ZWindowTimers::Stop(id);
}

void ZWindow::SetGraphics(ZGraphics* graphics)
{
    mContext->SetGraphics(graphics);
}

void ZWindow::MakeOffscreen()
{
    mPicture.Make(mPlace.GetSize(), mScale);
    mRootView->MarkSubtreeDirty();
}

void ZWindow::Invalidate(const ZRect& rect)
{
    assert(ZInterfaceLock::IsHeld());
    const ZRect pixels = mScale.ToPixels(rect);
    mPicture.NoteInvalid(mScale.ToUnits(pixels));
    if (mNativeWindow)
        mNativeWindow->Invalidate(pixels);
}

void ZWindow::RedrawAll()
{
    Invalidate(mPlace.GetArea());
    mRootView->MarkSubtreeDirty();
}

void ZWindow::RepaintUnder(const ZRect& rect)
{
    if (rect.IsEmpty())
        return;
    mRootView->MarkDirtyWithin(rect);
    Invalidate(rect);
}

void ZWindow::Update()
{
    assert(ZInterfaceLock::IsHeld());
    if (mNativeWindow)
        mNativeWindow->Update();
}

void ZWindow::Paint(const ZRect& rect)
{
    assert(ZInterfaceLock::IsHeld());
    mRootView->DrawView(rect);
    if (!mContext->GetGraphics())
        return;
    mKeys.DrawRing(*mContext, rect);
    mValueTip.Draw(*mContext, rect);
}

void ZWindow::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    assert(ZInterfaceLock::IsHeld());
    if (mModality.Drops(*message))
        return;
    mFilters.Call(*message);
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
        return mPlace.SetPosition(requireField<ZPoint>(*message, "MovePoint"));
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
    if (!mAttributes.mdiChild && app && app->GetWindowManager())
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
    if (mAttributes.closeStyle == ZWindowAttributes::CloseStyle::kHide)
        return Hide();
    ZApp* const app = ZApp::Of(*this);
    if (!app)
        return;
    if (mAttributes.closeStyle == ZWindowAttributes::CloseStyle::kApplication)
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
    mPlace.SetSize(rect.GetWidth(), rect.GetHeight());
    SizeChanged();
}

void ZWindow::SizeChanged()
{
    if (mPicture.Get())
        MakeOffscreen();
    if (!mAttached)
        return;
    SendToRoot(makeMessage<ZRect>(ZRESIZE, "ResizeRect", mPlace.GetArea()));
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

}  // namespace orvane
