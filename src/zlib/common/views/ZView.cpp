// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZView.h"

#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZMouseDispatch.h"
#include "zlib/common/views/ZViewFactory.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZViewTags.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>

namespace orvane
{

ZView::ZView(std::string_view name, ZLooper* looper)
    : ZHandler(name, looper)
    , mDocumentObservation(*this)
{
}

ZView::ZView(std::string_view name, const ZRect& rect, ZLooper* looper)
    : ZView(name, looper)
{
    mBounds = rect;
    mFrame = {0, 0, rect.GetWidth(), rect.GetHeight()};
}

ZView::ZView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZHandler(xml, application)
    , mTargetName(readTarget(*xml))
    , mDocumentObservation(*this)
{
    mLayout.Read(*xml);
    mAnimated = xml->GetAttributeBool("animated");
    mDoDefaultDraw = xml->GetAttributeBool("DoDefaultDraw");
    ReadBounds(*xml);
    readScale(*xml, mHorizontalScale, mVerticalScale);
    ReadPen(*xml);
    mBackground.Read(*xml, GetApplication());
    mTooltip.Read(*xml, GetApplication());
    LayoutSubviews(*xml);
}

ZView::~ZView()
{
    mDocumentObservation.Stop();
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

void ZView::ReadBounds(const ZXMLElement& xml)
{
    if (readNamedRect(xml, "bounds", mBounds))
        mFrame = {0, 0, mBounds.GetWidth(), mBounds.GetHeight()};
    readNamedRect(xml, "frame", mBounds);
}

void ZView::LayoutSubviews(const ZXMLElement& xml)
{
    for (const auto& view : makeSubviews(xml, GetName(), GetApplication()))
        AddSubview(view, false);
}

boost::shared_ptr<ZXMLElement> ZView::ExtractHeader() const
{
    auto xml = boost::make_shared<ZXMLElement>("view");
    xml->AddAttribute("class", GetClassName());
    xml->AddAttribute("name", GetName());
    mLayout.WriteAttributes(*xml);
    return xml;
}

void ZView::ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const
{
    writeTarget(*xml, mTargetName);
    writeNamedRect(*xml, "bounds", mBounds);
    mLayout.WriteConstraint(*xml);
    writeScale(*xml, mHorizontalScale, mVerticalScale);
    WritePen(*xml);
    mBackground.Write(*xml);
    mTooltip.Write(*xml);
    mSubviews.Write(*xml);
}

void ZView::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    assert(ZInterfaceLock::IsHeld());
    switch (message->GetId()) {
    case ZMOUSEDOWN:
    case ZMOUSEDOUBLECLICK:
    case ZMOUSEUP:
    case ZMOUSEWHEEL:
    case ZMOUSEENTERED:
    case ZMOUSELEFT:
        return dispatchMouse(*this, *message);
    case ZMOUSEMOVED:
        mLastMove = requireField<ZPoint>(*message, "MovePoint");
        return dispatchMouse(*this, *message);
    case ZTIMER:
        return HandleTimer(message);
    case ZKEYDOWN:
        return KeyDown(keyOf(*message));
    case ZATTACHEDTOELEMENT:
    case ZELEMENTCHANGED:
        return ElementChanged(requireField<std::uint64_t>(*message, "elementid"));
    case ZHIDE:
        return Hide();
    case ZSHOW:
        return Show();
    case ZDRAW:
        return;
    default:
        return HandleTreeMessage(message);
    }
}

void ZView::HandleTreeMessage(const boost::shared_ptr<const ZMessage>& message)
{
    switch (message->GetId()) {
    case ZATTACHED:
        return HandleAttached(message);
    case ZDETACHED:
        return HandleDetached(message);
    case ZDOCUMENTNEW:
    case ZDOCUMENTCHANGED:
        return HandleDocument(message);
    case ZDOCUMENTCLOSED:
        return HandleDocumentClosed(message);
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
    default:
        return ZHandler::HandleZMessage(message);
    }
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
    if (mWindow && mNavigable)
        mWindow->AddNavigableView(this);
    if (mLayout.fill && mParent) {
        const ZPoint size = mLayout.SizeWithin(mParent->mBounds);
        SetBoundsSize(size.x, size.y);
    }
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
    mEdit.End();
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
    assert(ZInterfaceLock::IsHeld());
    mDocument = document;
    mDocumentObservation.Start(document);
    DetachFromElements();
    if (!mTargetName.empty())
        AttachToElement(FindElement(mTargetName));
    OnDocumentChanged();
}

void ZView::HandleDocumentClosed(const boost::shared_ptr<const ZMessage>& message)
{
    mDocumentObservation.Stop();
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
    assert(ZInterfaceLock::IsHeld());
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
    assert(ZInterfaceLock::IsHeld());
    mEdit.End();
    if (mElement)
        mElement->RemoveObserver(this);
    mElement.reset();
}

void ZView::SetAnimated(bool animated)
{
    assert(ZInterfaceLock::IsHeld());
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
    assert(ZInterfaceLock::IsHeld());
    mMouseCaptured = capture;
    if (!toWindow)
        return;
    if (mWindow)
        mWindow->SetCapturedView(capture ? this : nullptr);
    // Last: the host is called with the interface lock given up, and may close the window.
    if (capture)
        mEdit.Begin(GetElement());
    else
        mEdit.End();
}

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
    assert(ZInterfaceLock::IsHeld());
    SetBoundsSize(width, height);
    SendToSubviews(makeMessage(ZRESIZE, "ResizeRect", mBounds));
    SizeChanged();
}

void ZView::MoveTo(const ZPoint& point)
{
    assert(ZInterfaceLock::IsHeld());
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
    const ZPoint origin = GetOriginInParent();
    mWindowOrigin = {parent.x + origin.x, parent.y + origin.y};
}

void ZView::RecordMargins()
{
    if (mParent)
        mLayout.RecordMargins(mBounds, mParent->mBounds);
}

void ZView::HandleResize(const ZMessage& message)
{
    const ZRect bounds =
        mLayout.Follow(mBounds, requireField<ZRect>(message, "ResizeRect", "SizedRect"));
    if (bounds.left != mBounds.left || bounds.top != mBounds.top)
        MoveTo({bounds.left, bounds.top});
    if (bounds.GetWidth() != mBounds.GetWidth() || bounds.GetHeight() != mBounds.GetHeight())
        Resize(bounds.GetWidth(), bounds.GetHeight());
}

void ZView::AddSubview(const boost::shared_ptr<ZView>& view, bool atFront)
{
    assert(ZInterfaceLock::IsHeld());
    if (!view || view.get() == this || view->mParent)
        return;
    mSubviews.Insert(view, atFront);
    TakeIn(*view);
}

void ZView::TakeIn(ZView& child)
{
    assert(!child.mParent && !child.mWindow);
    child.mParent = this;
    child.SetContext(mContext);
    if (mWindow)
        child.HandleZMessage(makeMessage(ZATTACHED, "AttachedWindow", mWindow));
    if (mDocument && !child.mDocument)
        child.HandleZMessage(makeMessage(ZDOCUMENTNEW, "Document", mDocument));
    child.Invalidate();
}

void ZView::RemoveSubview(const boost::shared_ptr<ZView>& view)
{
    assert(ZInterfaceLock::IsHeld());
    if (!view || view->mParent != this)
        return;
    mSubviews.Remove(view);
    LetGo(*view);
    InvalidatePart(view->mBounds);
}

void ZView::LetGo(ZView& child)
{
    assert(child.mParent == this);
    child.mParent = nullptr;
    if (mWindow)
        child.HandleZMessage(makeMessage(ZDETACHED, "DetachedWindow", mWindow));
    child.SetContext(nullptr);
    if (child.mDocument)
        child.HandleZMessage(boost::make_shared<ZMessage>(ZDOCUMENTCLOSED));
}

void ZView::ClearSubviews()
{
    assert(ZInterfaceLock::IsHeld());
    for (const auto& child : mSubviews.TakeAll())
        LetGo(*child);
}

bool ZView::HitTest(ZView*& out, const ZPoint& point)
{
    if (!mFrame.ContainsWithEdges(point))
        return false;
    out = this;
    mSubviews.HitTestFirst(out, point);
    return true;
}

void ZView::Broadcast(std::int32_t messageId)
{
    SendToSubviews(boost::make_shared<ZMessage>(messageId));
}

void ZView::SetContext(const boost::shared_ptr<ZDrawingContext>& context)
{
    assert(ZInterfaceLock::IsHeld());
    mContext = context;
    mSubviews.SetContext(context);
}

void ZView::Show()
{
    assert(ZInterfaceLock::IsHeld());
    mVisible = true;
    Broadcast(ZSHOW);
    OnShown();
    Invalidate();
}

void ZView::Hide()
{
    assert(ZInterfaceLock::IsHeld());
    mVisible = false;
    Broadcast(ZHIDE);
    OnHidden();
    if (mParent)
        mParent->InvalidatePart(mBounds);
}

void ZView::Invalidate(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom)
{
    assert(ZInterfaceLock::IsHeld());
    if (!mVisible || !mWindow)
        return;
    mDirty = true;
    ZRect rect = ZRect{left, top, right, bottom}.Offset(mWindowOrigin.x, mWindowOrigin.y);
    if (mParent)
        rect = rect.Intersection(
            mParent->mFrame.Offset(mParent->mWindowOrigin.x, mParent->mWindowOrigin.y));
    if (!rect.IsEmpty())
        mWindow->Invalidate(rect);
}

void ZView::MarkSubtreeDirty()
{
    for (const auto& child : mSubviews.Copy()) {
        child->mDirty = true;
        child->MarkSubtreeDirty();
    }
}

void ZView::MarkDirtyWithin(const ZRect& rect)
{
    mDirty = true;
    mSubviews.MarkDirtyWithin(rect);
}

void ZView::AddOverlay(const boost::shared_ptr<ZOverlay>& overlay)
{
    if (mOverlays.Add(overlay))
        Invalidate();
}

void ZView::RemoveOverlay(const boost::shared_ptr<ZOverlay>& overlay)
{
    if (mOverlays.Remove(overlay))
        Invalidate();
}

bool ZView::CanDraw() const
{
    return mContext && mContext->GetGraphics();
}

void ZView::DrawView(const ZRect& updateRect)
{
    if (!mVisible || !mBounds.Intersects(updateRect) || !CanDraw())
        return;
    const ZPoint origin = GetOriginInParent();
    const ZRect rect =
        mBounds.Intersection(updateRect).Offset(-origin.x, -origin.y).Intersection(mFrame);
    const ZSavedStateScope outer(*mContext);
    mContext->Translate(origin.x, origin.y);
    {
        const ZSavedStateScope inner(*mContext);
        mContext->SetClip(rect);
        DrawOwn(rect);
        mSubviews.Draw(rect);
    }
    mOverlays.Draw(*mContext);
    DrawOver();
}

void ZView::DrawOwn(const ZRect& rect)
{
    assert(CanDraw());
    ZRegion region(rect);
    if (mParent)
        mSubviews.SubtractOpaque(region);
    if (region.IsEmpty())
        return;
    const ZRect part = region.GetBounds();
    // Except for a repair, the background covers the children, so they have to be drawn again.
    const bool isPainted = mBackground.IsPainted();
    if (mDirty || (isPainted && !RepairsUnderChildren()))
        mSubviews.MarkDirtyWithin(part);
    if (isPainted)
        DrawBackground(part);
    if (mDirty)
        Draw(part);
    mDirty = false;
}

void ZView::DrawBackground(const ZRect& rect)
{
    if (!mContext)
        return;
    mBackground.MakeShadedBitmap(*mContext, mFrame, GetShaderName());
    if (RepairsUnderChildren())
        mBackground.RepairBitmap(*mContext, mSubviews.FindExposed(rect));
    else if (mBackground.HasBitmap())
        mBackground.DrawBitmap(*mContext, mFrame);
    mBackground.DrawFrame(*mContext, mFrame, rect);
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
