// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZView.h"

#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZFont.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <utility>

namespace orvane
{

ZView::ZView(std::string_view name, ZLooper* looper)
    : ZHandler(name, looper)
    , mFont(ZFont::MakeDefault())
{
}

ZView::ZView(std::string_view name, const ZRect& rect, ZLooper* looper)
    : ZView(name, looper)
{
    mBounds = rect;
    mFrame = {0, 0, rect.GetWidth(), rect.GetHeight()};
}

ZView::~ZView()
{
    StopObservingDocument();
    ClearSubviews();
    ZView::DetachFromElements();
    LeaveWindow();
}

bool ZView::IsKindOf(std::string_view className) const
{
    return className == "ZViewClass" || ZHandler::IsKindOf(className);
}

const char* ZView::GetClassName() const
{
    return "ZViewClass";
}

ZApplication* ZView::GetApplication()
{
    return GetApp();
}

void ZView::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZMOUSEDOWN:
        return HandleMouseDown(*message);
    case ZMOUSEDOUBLECLICK:
        return HandleMouseDoubleClick(*message);
    case ZMOUSEUP:
        return HandleMouseUp(*message);
    case ZMOUSEMOVED:
        return HandleMouseMoved(*message);
    case ZMOUSEWHEEL:
        return HandleMouseWheel(*message);
    case ZMOUSEENTERED:
        return HandleMouseEntered(*message);
    case ZMOUSELEFT:
        return MouseLeft();
    case ZATTACHED:
        return HandleAttached(message);
    case ZDETACHED:
        return HandleDetached(message);
    case ZDOCUMENTNEW:
    case ZDOCUMENTCHANGED:
        return HandleDocument(message);
    case ZDOCUMENTCLOSED:
        return HandleDocumentClosed(message);
    case ZATTACHEDTOELEMENT:
    case ZELEMENTCHANGED:
        return ElementChanged(requireField<std::uint64_t>(*message, "elementid"));
    case ZRESIZE:
        return HandleResize(*message);
    case ZCHILDRESIZED:
        return HandleChildResized(message);
    case ZWINDOWOFFSETCHANGED:
        UpdateWindowOrigin();
        return SendToSubviews(message);
    case ZSCALEHORIZONTAL:
        SetHorizontalScale(requireField<float>(*message, "Scale"));
        return SendToSubviews(message);
    case ZSCALEVERTICAL:
        SetVerticalScale(requireField<float>(*message, "Scale"));
        return SendToSubviews(message);
    case ZPREFSCHANGED:
    case ZSAMPLERATECHANGED:
    case ZQTEVENT:
    case ZENABLE:
    case ZDISABLE:
    case ZRELEASEMOVIE:
        return SendToSubviews(message);
    case ZHIDE:
        return Hide();
    case ZSHOW:
        return Show();
    case ZDRAW:
        return;
    case ZTIMER:
        return HandleTimer(message);
    default:
        return ZHandler::HandleZMessage(message);
    }
}

void ZView::HandleMouseDown(const ZMessage& message)
{
    const auto point = requireField<ZPoint>(message, "ClickPoint");
    const auto mods = requireField<std::uint32_t>(message, "MouseMods");
    const auto child = FindSubviewAt(point);
    if (!child)
        return MouseDown(point, mods);
    child->HandleZMessage(makeMouseMessage(ZMOUSEDOWN, "ClickPoint", ToChild(*child, point), mods));
}

void ZView::HandleMouseDoubleClick(const ZMessage& message)
{
    const auto point = requireField<ZPoint>(message, "ClickPoint");
    const auto mods = requireField<std::uint32_t>(message, "MouseMods");
    const auto child = FindSubviewAt(point);
    if (!child)
        return MouseDoubleClick(point, mods);
    child->HandleZMessage(
        makeMouseMessage(ZMOUSEDOUBLECLICK, "ClickPoint", ToChild(*child, point), mods));
}

void ZView::HandleMouseUp(const ZMessage& message)
{
    const auto point = requireField<ZPoint>(message, "UpPoint");
    const auto mods = requireField<std::uint32_t>(message, "MouseMods");
    if (const auto child = FindSubviewAt(point))
        child->HandleZMessage(makeMouseMessage(ZMOUSEUP, "UpPoint", ToChild(*child, point), mods));
    // All views on the way see the release.
    MouseUp(point, mods);
}

void ZView::HandleMouseMoved(const ZMessage& message)
{
    const auto point = requireField<ZPoint>(message, "MovePoint");
    const auto mods = requireField<std::uint32_t>(message, "MouseMods");
    mLastMove = point;
    if (mMouseCaptured)
        return MouseMoved(point, mods);
    if (const auto child = FindSubviewAt(point))
        child->HandleZMessage(
            makeMouseMessage(ZMOUSEMOVED, "MovePoint", ToChild(*child, point), mods));
}

void ZView::HandleMouseWheel(const ZMessage& message)
{
    const auto point = requireField<ZPoint>(message, "WheelPoint");
    const auto mods = requireField<std::uint32_t>(message, "MouseMods");
    const auto axis = requireField<std::int32_t>(message, "WheelAxis");
    const auto delta = requireField<std::int32_t>(message, "WheelDelta");
    const auto child = FindSubviewAt(point);
    if (!child)
        return MouseWheel(point, mods, axis, delta);
    child->HandleZMessage(makeWheelMessage(ToChild(*child, point), mods, axis, delta));
}

void ZView::HandleMouseEntered(const ZMessage& message)
{
    MouseEntered(requireField<ZPoint>(message, "EnteredPoint"));
    if (mWindow)
        mWindow->SetHoverView(this);
}

void ZView::HandleTimer(const boost::shared_ptr<const ZMessage>& message)
{
    if (!OnTimer(requireField<std::int64_t>(*message, "TimerID")))
        SendToSubviews(message);
}

void ZView::HandleChildResized(const boost::shared_ptr<const ZMessage>& message)
{
    ChildResized();
    if (mParent)
        mParent->HandleZMessage(message);
}

void ZView::HandleAttached(const boost::shared_ptr<const ZMessage>& message)
{
    mWindow = requireField<ZWindow*>(*message, "AttachedWindow", "Window");
    if (mWindow && (mViewFlags & kNavigable) != 0)
        mWindow->AddNavigableView(this);
    if (mFill && mParent)
        FillParent();
    RecordMargins();
    if (mWindow && HasTooltip())
        SetUpTooltip();
    if (mWindow && mAnimated)
        mWindow->AddIdleView(this);
    UpdateWindowOrigin();
    SendToSubviews(message);
    OnAttached();
}

void ZView::HandleDetached(const boost::shared_ptr<const ZMessage>& message)
{
    if (mWindow && mAnimated)
        mWindow->RemoveIdleView(this);
    SendToSubviews(message);
    OnDetached();
    LeaveWindow();
}

void ZView::LeaveWindow()
{
    mMouseCaptured = false;
    EndEdit();
    if (!mWindow)
        return;
    mWindow->RemoveTool(this);
    mWindow->ForgetView(this);
    mWindow = nullptr;
}

void ZView::SetUpTooltip()
{
    UpdateWindowOrigin();
    mWindow->AddTool(this, mFrame.Offset(mWindowOrigin.x, mWindowOrigin.y));
}

void ZView::SetNavigable(bool navigable)
{
    mViewFlags = navigable ? mViewFlags | kNavigable : mViewFlags & ~kNavigable;
}

void ZView::HandleDocument(const boost::shared_ptr<const ZMessage>& message)
{
    if (message->GetId() == ZDOCUMENTNEW) {
        SetDocument(requireDocument(*message, "Document"));
    } else {
        ZDocument* const document = requireDocument(*message, "NewDocument");
        ZTrace::Write(GetName() + " view: 'ZDOCUMENTCHANGED to " +
                      (document ? document->GetName() : std::string()) + "'\n");
        SetDocument(document);
    }
    SendToSubviews(message);
}

void ZView::SetDocument(ZDocument* document)
{
    StopObservingDocument();
    mDocument = document;
    if (mDocument) {
        mDocumentLife = mDocument->GetLife();
        mDocument->AddObserver(this);
    }
    DetachFromElements();
    if (!mTargetName.empty())
        AttachToElement(FindElement(mTargetName));
    OnDocumentChanged();
}

void ZView::StopObservingDocument()
{
    // One that has gone without a word has taken its observers along.
    if (mDocument && !mDocumentLife.expired())
        mDocument->RemoveObserver(this);
}

void ZView::HandleDocumentClosed(const boost::shared_ptr<const ZMessage>& message)
{
    StopObservingDocument();
    DetachFromElements();
    OnDocumentClosed();
    mDocument = nullptr;
    SendToSubviews(message);
}

boost::shared_ptr<ZElement> ZView::FindElement(std::string_view name) const
{
    return mDocument && !name.empty() ? mDocument->FindElement(name) : nullptr;
}

void ZView::AttachToElement(const boost::shared_ptr<ZElement>& element)
{
    if (mElement)
        mElement->RemoveObserver(this);
    mElement = element;
    if (!mElement)
        return;
    OnElementAttached();
    if (!mAnimated)
        mElement->AddObserver(this);
}

void ZView::DetachFromElements()
{
    EndEdit();
    if (mElement)
        mElement->RemoveObserver(this);
    mElement.reset();
}

void ZView::SetAnimated(bool animated)
{
    if (animated == mAnimated)
        return;
    mAnimated = animated;
    if (mElement && animated)
        mElement->RemoveObserver(this);
    else if (mElement)
        mElement->AddObserver(this);
    if (mWindow && animated)
        mWindow->AddIdleView(this);
    else if (mWindow)
        mWindow->RemoveIdleView(this);
}

void ZView::SetMouseCapture(bool capture, bool toWindow)
{
    mMouseCaptured = capture;
    if (!toWindow)
        return;
    if (mWindow)
        mWindow->SetCapturedView(capture ? this : nullptr);
    // Last, since the host is called with the interface lock given up.
    if (capture)
        BeginEdit();
    else
        EndEdit();
}

void ZView::BeginEdit()
{
    auto* const plugin = dynamic_cast<ZPlugin*>(GetApplication());
    const auto element = GetElement();
    if (!plugin || !element || mEditedElement)
        return;
    mEditedElement = element;
    plugin->BeginEdit(element.get());
}

void ZView::EndEdit()
{
    const auto edited = std::exchange(mEditedElement, nullptr);
    auto* const plugin = dynamic_cast<ZPlugin*>(GetApplication());
    if (edited && plugin)
        plugin->EndEdit(edited.get());
}

// Places and sizes.

void ZView::SetBoundsSize(std::int32_t width, std::int32_t height)
{
    mBounds.right = mBounds.left + width;
    mBounds.bottom = mBounds.top + height;
    mFrame.right = mFrame.left + width;
    mFrame.bottom = mFrame.top + height;
    RecordMargins();
}

void ZView::Resize(std::int32_t width, std::int32_t height)
{
    SetBoundsSize(width, height);
    const auto message = boost::make_shared<ZMessage>(ZRESIZE);
    message->Add<ZRect>("ResizeRect", mBounds);
    SendToSubviews(message);
    SizeChanged();
}

void ZView::MoveTo(const ZPoint& point)
{
    mBounds = {point.x, point.y, point.x + mBounds.GetWidth(), point.y + mBounds.GetHeight()};
    if (mParent && mWindow)
        HandleZMessage(boost::make_shared<ZMessage>(ZWINDOWOFFSETCHANGED));
    PositionChanged();
}

void ZView::SetFrameOrigin(std::int32_t x, std::int32_t y)
{
    mFrame = {x, y, x + mFrame.GetWidth(), y + mFrame.GetHeight()};
    HandleZMessage(boost::make_shared<ZMessage>(ZWINDOWOFFSETCHANGED));
}

void ZView::UpdateWindowOrigin()
{
    const ZPoint parent = mParent ? mParent->mWindowOrigin : ZPoint{};
    const ZPoint origin = OriginInParent();
    mWindowOrigin = {parent.x + origin.x, parent.y + origin.y};
}

void ZView::FillParent()
{
    SetBoundsSize(mParent->mBounds.GetWidth() - mMargins.left - mMargins.right,
                  mParent->mBounds.GetHeight() - mMargins.top - mMargins.bottom);
}

void ZView::RecordMargins()
{
    if (mStretchMask == 0 || !mParent)
        return;
    mMargins = {mBounds.left, mBounds.top, mParent->mBounds.GetWidth() - mBounds.right,
                mParent->mBounds.GetHeight() - mBounds.bottom};
}

void ZView::HandleResize(const ZMessage& message)
{
    const auto parent = requireField<ZRect>(message, "ResizeRect", "SizedRect");
    ZRect bounds = mBounds;
    if (mStretchMask & kFollowRight) {
        bounds.right = parent.GetWidth() - mMargins.right;
        if (!(mStretchMask & kKeepLeft))
            bounds.left = bounds.right - mBounds.GetWidth();
    }
    if (mStretchMask & kFollowBottom) {
        bounds.bottom = parent.GetHeight() - mMargins.bottom;
        if (!(mStretchMask & kKeepTop))
            bounds.top = bounds.bottom - mBounds.GetHeight();
    }
    if (bounds.left != mBounds.left || bounds.top != mBounds.top)
        MoveTo({bounds.left, bounds.top});
    if (bounds.GetWidth() != mBounds.GetWidth() || bounds.GetHeight() != mBounds.GetHeight())
        Resize(bounds.GetWidth(), bounds.GetHeight());
}

// What classes replace.

void ZView::ElementChanged(std::uint64_t /*elementId*/)
{
}

void ZView::MouseDoubleClick(const ZPoint& /*point*/, std::uint32_t /*mods*/)
{
}

void ZView::MouseDown(const ZPoint& /*point*/, std::uint32_t /*mods*/)
{
}

void ZView::MouseUp(const ZPoint& /*point*/, std::uint32_t /*mods*/)
{
}

void ZView::MouseMoved(const ZPoint& /*point*/, std::uint32_t /*mods*/)
{
}

void ZView::MouseEntered(const ZPoint& /*point*/)
{
}

void ZView::MouseWheel(const ZPoint& /*point*/, std::uint32_t /*mods*/, std::int32_t /*axis*/,
                       std::int32_t /*delta*/)
{
}

bool ZView::OnTimer(std::int64_t /*timerId*/)
{
    return false;
}

void ZView::SetFocus(bool /*focus*/)
{
}

ZString ZView::GetTooltipText(const ZPoint& /*point*/)
{
    return mTooltipText;
}

void ZView::SetHorizontalScale(float scale)
{
    mHorizontalScale = scale;
    Invalidate();
}

void ZView::SetVerticalScale(float scale)
{
    mVerticalScale = scale;
    Invalidate();
}

}  // namespace orvane
