// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZView.h"

#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZMouseDispatch.h"
#include "zlib/common/views/ZOverlay.h"
#include "zlib/common/views/ZViewFactory.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZViewTags.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>

namespace orvane
{

ZView::ZView(std::string_view name, ZLooper* looper)
    : ZHandler(name, looper)
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
{
    ReadTarget(*xml);
    mLayout.Read(*xml);
    mAnimated = xml->GetAttributeBool("animated");
    mDoDefaultDraw = xml->GetAttributeBool("DoDefaultDraw");
    ReadBounds(*xml);
    ReadScale(*xml);
    ReadPen(*xml);
    mBackground.Read(*xml, GetApplication());
    ReadTooltips(*xml);
    LayoutSubviews(*xml);
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

void ZView::ReadTarget(const ZXMLElement& xml)
{
    const std::int32_t count = xml.GetChildCount("element");
    for (std::int32_t i = 0; i < count; ++i) {
        const auto element = xml.GetChild("element", i);
        if (element->HasAttribute("target"))
            mTargetName = element->GetAttribute("target");
    }
}

void ZView::ReadBounds(const ZXMLElement& xml)
{
    if (readNamedRect(xml, "bounds", mBounds))
        mFrame = {0, 0, mBounds.GetWidth(), mBounds.GetHeight()};
    readNamedRect(xml, "frame", mBounds);
}

void ZView::ReadScale(const ZXMLElement& xml)
{
    const auto scale = xml.GetChild("scale");
    if (!scale)
        return;
    // There is no window yet, so nothing needs to be repainted.
    if (scale->HasAttribute("horizontal"))
        mHorizontalScale = scale->GetFloat("horizontal");
    if (scale->HasAttribute("vertical"))
        mVerticalScale = scale->GetFloat("vertical");
}

void ZView::ReadTooltips(const ZXMLElement& xml)
{
    const std::int32_t count = xml.GetChildCount("tooltip");
    for (std::int32_t i = 0; i < count; ++i) {
        const auto tooltip = xml.GetChild("tooltip", i);
        if (!tooltip->AttributeIs("type", "short") || !tooltip->HasAttribute("text"))
            continue;
        mTooltipText = ZString(tooltip->GetAttribute("text"));
        mHasTooltip = true;
        ZApplication* const application = GetApplication();
        if (application && tooltip->HasAttribute("key"))
            application->GetResourceString(tooltip->GetInt32("key"), mTooltipText);
    }
}

void ZView::LayoutSubviews(const ZXMLElement& xml)
{
    const auto subviews = xml.GetChild("subviews");
    const std::int32_t count = subviews ? subviews->GetChildCount("view") : 0;
    for (std::int32_t i = 0; i < count; ++i) {
        const auto view = subviews->GetChild("view", i);
        ZTrace::Write("View (" + GetName() + "): Adding " + view->GetAttributeOr("class", "") +
                      " instance named '" + view->GetAttributeOr("name", "") + "' \n");
        AddSubview(makeView(view, GetApplication()), false);
    }
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
    if (!mTargetName.empty()) {
        ZXMLElement element("element");
        element.AddAttribute("target", mTargetName);
        xml->AddChild(element);
    }
    writeNamedRect(*xml, "bounds", mBounds);
    mLayout.WriteConstraint(*xml);
    ZXMLElement scale("scale");
    scale.AddAttribute("horizontal", mHorizontalScale);
    scale.AddAttribute("vertical", mVerticalScale);
    xml->AddChild(scale);
    WritePen(*xml);
    mBackground.Write(*xml);
    if (mHasTooltip) {
        ZXMLElement tooltip("tooltip");
        tooltip.AddAttribute("type", "short");
        tooltip.AddAttribute("text", withoutMarkup(mTooltipText.ToNarrow()));
        xml->AddChild(tooltip);
    }
    ZXMLElement subviews("subviews");
    for (const auto& child : mSubviews.Copy())
        subviews.AddChild(*child->ExtractXML());
    xml->AddChild(subviews);
}

void ZView::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    assert(ZInterfaceLock::IsHeld());
    switch (message->GetId()) {
    case ZMOUSEDOWN:
    case ZMOUSEDOUBLECLICK:
    case ZMOUSEUP:
    case ZMOUSEWHEEL:
        return dispatchMouse(*this, *message);
    case ZMOUSEMOVED:
        mLastMove = requireField<ZPoint>(*message, "MovePoint");
        return dispatchMouse(*this, *message);
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
    // A document that has been destroyed has no observers any more.
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

void ZView::SetStretchMask(std::int32_t mask)
{
    assert((mask & ~ZViewLayout::kStretchAll) == 0);
    mLayout.stretchMask = mask;
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

boost::shared_ptr<ZView> ZView::SubviewAt(std::int32_t index) const
{
    return mSubviews.At(index);
}

std::int32_t ZView::IndexOfSubview(const ZView* view) const
{
    return mSubviews.IndexOf(view);
}

std::int32_t ZView::GetSubviewCount() const
{
    return mSubviews.Count();
}

boost::shared_ptr<ZView> ZView::FindSubview(std::string_view name) const
{
    return mSubviews.Find(name);
}

boost::shared_ptr<ZView> ZView::FindSubviewAt(const ZPoint& point) const
{
    return mSubviews.FindTop(point);
}

bool ZView::HitTest(ZView*& out, const ZPoint& point)
{
    if (!mFrame.ContainsWithEdges(point))
        return false;
    out = this;
    mSubviews.HitTestFirst(out, point);
    return true;
}

void ZView::SendToSubviews(const boost::shared_ptr<const ZMessage>& message)
{
    // A copy keeps the children alive: handling the message may remove views.
    for (const auto& child : mSubviews.Copy())
        child->HandleZMessage(message);
}

void ZView::Broadcast(std::int32_t messageId)
{
    SendToSubviews(boost::make_shared<ZMessage>(messageId));
}

void ZView::SetContext(const boost::shared_ptr<ZDrawingContext>& context)
{
    assert(ZInterfaceLock::IsHeld());
    mContext = context;
    for (const auto& child : mSubviews.Copy())
        child->SetContext(context);
}

void ZView::SetFrameRate(float rate)
{
    for (const auto& child : mSubviews.Copy())
        child->SetFrameRate(rate);
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

void ZView::Invalidate()
{
    assert(ZInterfaceLock::IsHeld());
    Invalidate(mFrame.left, mFrame.top, mFrame.right, mFrame.bottom);
}

void ZView::Invalidate(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom)
{
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

void ZView::InvalidatePart(const ZRect& rect)
{
    assert(ZInterfaceLock::IsHeld());
    Invalidate(rect.left, rect.top, rect.right, rect.bottom);
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
    for (const auto& child : mSubviews.Copy()) {
        const ZRect part = child->mBounds.Intersection(rect);
        if (part.IsEmpty())
            continue;
        const ZPoint origin = child->GetOriginInParent();
        child->mDirty = true;
        child->MarkDirtyWithin(part.Offset(-origin.x, -origin.y));
    }
}

void ZView::AddOverlay(const boost::shared_ptr<ZOverlay>& overlay)
{
    if (!overlay || std::ranges::count(mOverlays, overlay) != 0)
        return;
    mOverlays.push_back(overlay);
    Invalidate();
}

void ZView::RemoveOverlay(const boost::shared_ptr<ZOverlay>& overlay)
{
    if (std::erase(mOverlays, overlay) != 0)
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
        for (const auto& child : mSubviews.Copy())
            child->DrawView(rect);
    }
    for (const auto& overlay : mOverlays)
        overlay->DrawOverlay(*mContext);
    DrawOver();
}

void ZView::DrawOwn(const ZRect& rect)
{
    assert(CanDraw());
    ZRegion region(rect);
    if (mParent) {
        for (const auto& child : mSubviews.Copy()) {
            if (!child->mVisible)
                continue;
            ZRegion opaque = child->GetOpaqueRegion();
            const ZPoint origin = child->GetOriginInParent();
            opaque.Translate(origin.x, origin.y);
            region.Subtract(opaque);
        }
    }
    if (region.IsEmpty())
        return;
    const ZRect part = region.GetBounds();
    // Except for a repair, the background covers the children, so they have to be drawn again.
    const bool isPainted = mBackground.IsPainted();
    if (mDirty || (isPainted && !RepairsUnderChildren()))
        MarkDirtyWithin(part);
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
        RepairUnder(*this, {0, 0}, rect);
    else if (mBackground.HasBitmap())
        mBackground.DrawBitmap(*mContext, mFrame);
    mBackground.DrawFrame(*mContext, mFrame, rect);
}

bool ZView::RepairsUnderChildren() const
{
    return !mDirty && mBackground.HasBitmap() &&
           mBackground.GetBitmapStyle() == ZViewBackground::kBitmapOrigin;
}

void ZView::RepairUnder(const ZView& view, const ZPoint& offset, const ZRect& rect)
{
    for (const auto& child : view.mSubviews.Copy()) {
        const ZRect bounds = child->mBounds.Offset(offset.x, offset.y).Intersection(rect);
        // A hidden child paints nothing, so its place needs no repair.
        if (!child->mVisible || bounds.IsEmpty())
            continue;
        if (child->mDirty && !child->mBackground.IsPainted()) {
            const ZSavedStateScope saved(*mContext);
            mContext->SetClip(bounds);
            mBackground.DrawBitmapAtOrigin(*mContext);
            continue;
        }
        const ZPoint origin = child->GetOriginInParent();
        RepairUnder(*child, {offset.x + origin.x, offset.y + origin.y}, bounds);
    }
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
