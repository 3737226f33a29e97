// SPDX-License-Identifier: GPL-3.0-or-later
// The tree of views: who lies in whom, and what is found there.

#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <mutex>

namespace orvane
{

void ZView::AddSubview(const boost::shared_ptr<ZView>& view, bool atFront)
{
    if (!view || view.get() == this || view->mParent)
        return;
    {
        const std::lock_guard guard(mChildViewLock);
        mSubviews.insert(atFront ? mSubviews.begin() : mSubviews.end(), view);
    }
    TakeIn(*view);
}

void ZView::TakeIn(ZView& child)
{
    child.mParent = this;
    child.SetContext(mContext);
    if (mWindow) {
        const auto attached = boost::make_shared<ZMessage>(ZATTACHED);
        attached->Add<ZWindow*>("AttachedWindow", mWindow);
        child.HandleZMessage(attached);
    }
    if (mDocument && !child.mDocument) {
        const auto opened = boost::make_shared<ZMessage>(ZDOCUMENTNEW);
        opened->Add<ZDocument*>("Document", mDocument);
        child.HandleZMessage(opened);
    }
    child.Invalidate();
}

void ZView::RemoveSubview(const boost::shared_ptr<ZView>& view)
{
    if (!view || view->mParent != this)
        return;
    {
        const std::lock_guard guard(mChildViewLock);
        std::erase(mSubviews, view);
    }
    LetGo(*view);
    InvalidatePart(view->mBounds);
}

void ZView::LetGo(ZView& child)
{
    child.mParent = nullptr;
    if (mWindow) {
        const auto detached = boost::make_shared<ZMessage>(ZDETACHED);
        detached->Add<ZWindow*>("DetachedWindow", mWindow);
        child.HandleZMessage(detached);
    }
    child.SetContext(nullptr);
    if (child.mDocument)
        child.HandleZMessage(boost::make_shared<ZMessage>(ZDOCUMENTCLOSED));
}

void ZView::ClearSubviews()
{
    Children children;
    {
        const std::lock_guard guard(mChildViewLock);
        children.swap(mSubviews);
    }
    for (const auto& child : children)
        LetGo(*child);
}

ZView::Children ZView::CopyChildren() const
{
    const std::lock_guard guard(mChildViewLock);
    return mSubviews;
}

boost::shared_ptr<ZView> ZView::SubviewAt(std::int32_t index) const
{
    const std::lock_guard guard(mChildViewLock);
    if (index < 0 || index >= std::ssize(mSubviews))
        return nullptr;
    return mSubviews[static_cast<std::size_t>(index)];
}

std::int32_t ZView::IndexOfSubview(const ZView* view) const
{
    const std::lock_guard guard(mChildViewLock);
    const auto found = std::find_if(mSubviews.begin(), mSubviews.end(),
                                    [view](const auto& child) { return child.get() == view; });
    return found == mSubviews.end() ? -1 : static_cast<std::int32_t>(found - mSubviews.begin());
}

std::int32_t ZView::GetSubviewCount() const
{
    const std::lock_guard guard(mChildViewLock);
    return static_cast<std::int32_t>(mSubviews.size());
}

boost::shared_ptr<ZView> ZView::FindSubview(std::string_view name) const
{
    const std::lock_guard guard(mChildViewLock);
    for (const auto& child : mSubviews) {
        if (child->GetName() == name)
            return child;
        if (auto found = child->FindSubview(name))
            return found;
    }
    return nullptr;
}

boost::shared_ptr<ZView> ZView::FindSubviewAt(const ZPoint& point) const
{
    const std::lock_guard guard(mChildViewLock);
    const auto found =
        std::find_if(mSubviews.rbegin(), mSubviews.rend(), [&point](const auto& child) {
            return child->mVisible && child->mBounds.ContainsWithEdges(point);
        });
    return found == mSubviews.rend() ? nullptr : *found;
}

bool ZView::HitTest(ZView*& out, const ZPoint& point)
{
    if (!mFrame.ContainsWithEdges(point))
        return false;
    out = this;
    const std::lock_guard guard(mChildViewLock);
    const auto found =
        std::find_if(mSubviews.begin(), mSubviews.end(), [&point](const auto& child) {
            return child->mVisible && child->mBounds.ContainsWithEdges(point);
        });
    if (found != mSubviews.end())
        (*found)->HitTest(out, ToChild(**found, point));
    return true;
}

ZPoint ZView::OriginInParent() const
{
    return {mBounds.left - mFrame.left, mBounds.top - mFrame.top};
}

ZPoint ZView::ToChild(const ZView& child, const ZPoint& point)
{
    const ZPoint origin = child.OriginInParent();
    return {point.x - origin.x, point.y - origin.y};
}

void ZView::SendToSubviews(const boost::shared_ptr<const ZMessage>& message)
{
    // A copy, which holds them: what a child does with the message may take views away.
    for (const auto& child : CopyChildren())
        child->HandleZMessage(message);
}

void ZView::Broadcast(std::int32_t messageId)
{
    SendToSubviews(boost::make_shared<ZMessage>(messageId));
}

void ZView::SetContext(const boost::shared_ptr<ZDrawingContext>& context)
{
    mContext = context;
    const std::lock_guard guard(mChildViewLock);
    for (const auto& child : mSubviews)
        child->SetContext(context);
}

void ZView::SetFrameRate(float rate)
{
    for (const auto& child : CopyChildren())
        child->SetFrameRate(rate);
}

void ZView::Show()
{
    mVisible = true;
    Broadcast(ZSHOW);
    OnShown();
    Invalidate();
}

void ZView::Hide()
{
    mVisible = false;
    Broadcast(ZHIDE);
    OnHidden();
    if (mParent)
        mParent->InvalidatePart(mBounds);
}

}  // namespace orvane
