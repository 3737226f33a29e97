// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindow.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/objects/ZXMLGeometry.h"
#include "zlib/common/views/ZTooltip.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindowManager.h"
#include "zlib/common/views/ZWindowTimers.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvane
{

namespace
{

/// The view that holds all others, with a way to have them made.
class RootView : public ZView
{
public:
    using ZView::LayoutSubviews;
    using ZView::ZView;
};

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
{
    // Timers of this platform are as fine as they get: there is no resolution to ask for and to
    // give back.
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
    StopFrameTimer();
    mNativeWindow.reset();
    // Views forget the window while it still is one, and the document while it is there: those that
    // are in the middle of a message outlive both.
    mCapturedView = nullptr;
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
    mTitleAttribute = ZString(xml.GetAttribute("title"));
    mTitleStyle = titleStyleOf(xml);
    mCloseStyle = closeStyleOf(xml);
    mResizable = !xml.AttributeIs("resize", "false");
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
    const auto root = boost::make_shared<RootView>("main", GetLooper());
    mRootView = root;
    root->SetStretchMask(ZView::kStretchAll);
    root->SetBoundsSize(mSize.x, mSize.y);
    root->SetContext(mContext);
    root->LayoutSubviews(xml);
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
    if (GetArea().IsEmpty())
        return false;
    // Wherever the window before was moved to, this one begins at its own place.
    mPosition = mFirstPosition;
    auto native = ZNativeWindow::Create(NativeSettings(parent, nativeParent), *this);
    if (!native)
        return false;
    if (mNativeWindow)
        EndModalRuns();
    ReleaseCapture();
    LeaveHover();
    mNativeWindow = std::move(native);
    MakeOffscreen();
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
    return settings;
}

void ZWindow::Destroy()
{
    HideTooltip();
    ReleaseCapture();
    LeaveHover();
    mPaused = true;
    UpdateFrameTimer();
    mNativeWindow.reset();
    SetGraphics(nullptr);
    mOffscreenBitmap.reset();
}

// Menus and dialogs above the window have lost their ground, and a dialog itself waits for an end
// that cannot come any more.
void ZWindow::EndModalRuns()
{
    if (ZApp* const app = ZApp::Of(*this))
        app->EndModalRuns();
}

void ZWindow::Detach()
{
}

void ZWindow::OnReady()
{
}

void ZWindow::OnActivated()
{
}

void ZWindow::OnDeactivated()
{
}

bool ZWindow::OnTimer(TimerId /*id*/)
{
    return false;
}

void ZWindow::Show()
{
    AttachViews();
    mPaused = false;
    UpdateFrameTimer();
    if (!mNativeWindow)
        return;
    mNativeWindow->SetRect(GetPlace());
    mNativeWindow->Show();
    mNativeWindow->Update();
}

void ZWindow::Hide()
{
    HideTooltip();
    ReleaseCapture();
    LeaveHover();
    // Nobody sees the frames of a window that is hidden, and hosts keep many of those.
    mPaused = true;
    UpdateFrameTimer();
    if (mNativeWindow)
        mNativeWindow->Hide();
}

bool ZWindow::IsVisible() const
{
    return mNativeWindow && mNativeWindow->IsVisible();
}

void ZWindow::AttachViews()
{
    if (mAttached)
        return;
    const auto message = boost::make_shared<ZMessage>(ZATTACHED);
    message->Add<ZWindow*>("AttachedWindow", this);
    mRootView->HandleZMessage(message);
    OnReady();
    mAttached = true;
}

void ZWindow::SetScale(double scale)
{
    SetSize(std::round(mFirstSize.x * scale), std::round(mFirstSize.y * scale));
    if (mNativeWindow)
        mNativeWindow->SetRect(GetPlace());
    SizeChanged();
}

void ZWindow::SetSize(double width, double height)
{
    // What no picture can have is cut.
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
    mWindowManagers.Append(std::move(manager));
}

void ZWindow::RemoveWindowManager(ZWindowManager* manager)
{
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
    if (view == mFocusView)
        return;
    ZView* const before = std::exchange(mFocusView, view);
    if (before) {
        before->SetFocus(false);
        before->Invalidate();
    }
    if (view) {
        view->SetFocus(true);
        view->Invalidate();
    }
}

void ZWindow::SetCapturedView(ZView* view)
{
    if (view == mCapturedView)
        return;
    mCapturedView = view;
    if (mNativeWindow)
        mNativeWindow->SetCapture(view != nullptr);
}

void ZWindow::ReleaseCapture()
{
    // Through the view, so that what it told the host about the edit of an element has its end.
    // That comes last, since the host may do anything.
    if (mCapturedView) {
        mCapturedView->OnCaptureLost();
        mCapturedView->SetMouseCapture(false, true);
    }
    SetCapturedView(nullptr);
}

void ZWindow::ForgetView(ZView* view)
{
    RemoveIdleView(view);
    mNavigableViews.Remove(view);
    RemoveTool(view);
    if (mHoverView == view)
        mHoverView = nullptr;
    if (mFocusView == view)
        mFocusView = nullptr;
    if (mCapturedView == view)
        SetCapturedView(nullptr);
}

void ZWindow::AddNavigableView(ZView* view)
{
    mNavigableViews.Append(view);
}

void ZWindow::AddTool(ZView* view, const ZRect& rect)
{
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
    mIdleViews.Append(view);
    view->SetFrameRate(static_cast<float>(mFramesPerSecond));
    UpdateFrameTimer();
}

void ZWindow::RemoveIdleView(ZView* view)
{
    mIdleViews.Remove(view);
    UpdateFrameTimer();
}

void ZWindow::SetFramesPerSecond(std::int32_t rate)
{
    mRequestedFramesPerSecond = std::max(rate, 1);
}

void ZWindow::UpdateFrameTimer()
{
    const bool wanted = mIdleViews.Count() > 0 && !mPaused;
    if (wanted && mFrameTimer == kNoTimer)
        mFrameTimer = StartTimer(1'000'000 / mFramesPerSecond, *this);
    if (!wanted)
        StopFrameTimer();
}

void ZWindow::StopFrameTimer()
{
    if (mFrameTimer != kNoTimer)
        StopTimer(std::exchange(mFrameTimer, kNoTimer));
}

void ZWindow::IdleFrame()
{
    const auto isIdle = [this](ZView* view) {
        return std::ranges::count(mIdleViews.Copy(), view) != 0;
    };
    for (ZView* const view : mIdleViews.Copy())
        if (isIdle(view))  // one before it may have ended it
            view->IdleTick();
}

}  // namespace orvane
