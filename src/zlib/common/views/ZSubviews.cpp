// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZSubviews.h"

#include "zlib/common/drawing/ZRegion.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZView.h"

#include <algorithm>
#include <cassert>
#include <mutex>
#include <utility>

namespace orvane
{

namespace
{

/// Finds the views that show at a point.
auto showsAt(const ZPoint& point)
{
    return [&point](const boost::shared_ptr<ZView>& view) {
        return view->IsVisible() && view->GetBounds().ContainsWithEdges(point);
    };
}

}  // namespace

void ZSubviews::Insert(const boost::shared_ptr<ZView>& view, bool atFront)
{
    assert(view && IndexOf(view.get()) < 0);
    const std::lock_guard guard(mLock);
    mViews.insert(atFront ? mViews.begin() : mViews.end(), view);
}

void ZSubviews::Remove(const boost::shared_ptr<ZView>& view)
{
    const std::lock_guard guard(mLock);
    std::erase(mViews, view);
}

ZSubviews::Views ZSubviews::TakeAll()
{
    const std::lock_guard guard(mLock);
    return std::exchange(mViews, {});
}

ZSubviews::Views ZSubviews::Copy() const
{
    const std::lock_guard guard(mLock);
    return mViews;
}

boost::shared_ptr<ZView> ZSubviews::At(std::int32_t index) const
{
    const std::lock_guard guard(mLock);
    if (index < 0 || index >= std::ssize(mViews))
        return nullptr;
    return mViews[static_cast<std::size_t>(index)];
}

std::int32_t ZSubviews::IndexOf(const ZView* view) const
{
    const std::lock_guard guard(mLock);
    const auto found =
        std::ranges::find_if(mViews, [view](const auto& each) { return each.get() == view; });
    return found == mViews.end() ? -1 : static_cast<std::int32_t>(found - mViews.begin());
}

boost::shared_ptr<ZView> ZSubviews::Find(std::string_view name) const
{
    const std::lock_guard guard(mLock);
    for (const auto& view : mViews) {
        if (view->GetName() == name)
            return view;
        if (auto found = view->FindSubview(name))
            return found;
    }
    return nullptr;
}

boost::shared_ptr<ZView> ZSubviews::FindTop(const ZPoint& point) const
{
    const std::lock_guard guard(mLock);
    const auto found = std::find_if(mViews.rbegin(), mViews.rend(), showsAt(point));
    return found == mViews.rend() ? nullptr : *found;
}

void ZSubviews::HitTestFirst(ZView*& out, const ZPoint& point) const
{
    const std::lock_guard guard(mLock);
    const auto found = std::find_if(mViews.begin(), mViews.end(), showsAt(point));
    if (found == mViews.end())
        return;
    const ZPoint origin = (*found)->GetOriginInParent();
    (*found)->HitTest(out, {point.x - origin.x, point.y - origin.y});
}

void ZSubviews::Write(ZXMLElement& parent) const
{
    ZXMLElement subviews("subviews");
    for (const auto& child : Copy())
        subviews.AddChild(*child->ExtractXML());
    parent.AddChild(subviews);
}

void ZSubviews::Send(const boost::shared_ptr<const ZMessage>& message) const
{
    // A copy keeps the children alive: handling the message may remove views.
    for (const auto& child : Copy())
        child->HandleZMessage(message);
}

void ZSubviews::SetContext(const boost::shared_ptr<ZDrawingContext>& context) const
{
    for (const auto& child : Copy())
        child->SetContext(context);
}

void ZSubviews::SetFrameRate(float rate) const
{
    for (const auto& child : Copy())
        child->SetFrameRate(rate);
}

void ZSubviews::Draw(const ZRect& updateRect) const
{
    for (const auto& child : Copy())
        child->DrawView(updateRect);
}

void ZSubviews::MarkDirtyWithin(const ZRect& rect) const
{
    for (const auto& child : Copy()) {
        const ZRect part = child->GetBounds().Intersection(rect);
        if (part.IsEmpty())
            continue;
        const ZPoint origin = child->GetOriginInParent();
        child->MarkDirtyWithin(part.Offset(-origin.x, -origin.y));
    }
}

void ZSubviews::SubtractOpaque(ZRegion& region) const
{
    for (const auto& child : Copy()) {
        if (!child->IsVisible())
            continue;
        ZRegion opaque = child->GetOpaqueRegion();
        const ZPoint origin = child->GetOriginInParent();
        opaque.Translate(origin.x, origin.y);
        region.Subtract(opaque);
    }
}

std::vector<ZRect> ZSubviews::FindExposed(const ZRect& rect) const
{
    std::vector<ZRect> parts;
    AddExposed(parts, {0, 0}, rect);
    return parts;
}

/// The offset is that from the children's parent to the view whose background is looked for.
void ZSubviews::AddExposed(std::vector<ZRect>& out, const ZPoint& offset, const ZRect& rect) const
{
    for (const auto& child : Copy()) {
        const ZRect bounds = child->GetBounds().Offset(offset.x, offset.y).Intersection(rect);
        // A hidden child paints nothing, so its place needs no repair.
        if (!child->IsVisible() || bounds.IsEmpty())
            continue;
        if (child->IsDirty() && !child->PaintsBackground()) {
            out.push_back(bounds);
            continue;
        }
        const ZPoint origin = child->GetOriginInParent();
        child->GetSubviews().AddExposed(out, {offset.x + origin.x, offset.y + origin.y}, bounds);
    }
}

}  // namespace orvane
