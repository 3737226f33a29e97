// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLock.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>
#include <vector>

namespace orvane
{

class ZDrawingContext;
class ZMessage;
class ZRegion;
class ZView;
class ZXMLElement;

/// The children of a view in their order, the first painted first and the last on top, with a lock
/// of their own. Points and rectangles are in the parent's coordinates. [interface thread]
class ZSubviews
{
public:
    using Views = std::vector<boost::shared_ptr<ZView>>;

    /// The view is not null and not in the list.
    void Insert(const boost::shared_ptr<ZView>& view, bool atFront);
    /// Ignores a view that is not in the list.
    void Remove(const boost::shared_ptr<ZView>& view);
    /// Empties the list and returns what was in it.
    [[nodiscard]] Views TakeAll();

    /// Returns a copy for callers that call the children, who may leave the list meanwhile.
    [[nodiscard]] Views Copy() const;
    /// Adds a tag `subviews` with the children.
    void Write(ZXMLElement& parent) const;
    /// Returns null when there is none at that index.
    [[nodiscard]] boost::shared_ptr<ZView> At(std::int32_t index) const;
    /// Returns -1 when the view is not in the list.
    [[nodiscard]] std::int32_t IndexOf(const ZView* view) const;
    /// Returns the first view of that name in the trees below, depth first; null when there is
    /// none.
    [[nodiscard]] boost::shared_ptr<ZView> Find(std::string_view name) const;
    /// Returns the visible child on top at a point, edges included; null when there is none.
    [[nodiscard]] boost::shared_ptr<ZView> FindTop(const ZPoint& point) const;
    /// Passes the point on to HitTest of the first visible child there, under the lock.
    void HitTestFirst(ZView*& out, const ZPoint& point) const;

    // Each calls the children of that moment, who may leave the list meanwhile.
    void Send(const boost::shared_ptr<const ZMessage>& message) const;
    void SetContext(const boost::shared_ptr<ZDrawingContext>& context) const;
    void SetFrameRate(float rate) const;
    void Draw(const ZRect& updateRect) const;
    /// Marks the children, and the views below them, dirty where they lie in the rectangle.
    void MarkDirtyWithin(const ZRect& rect) const;
    /// Takes off the region what the visible children cover with their opaque regions.
    void SubtractOpaque(ZRegion& region) const;
    /// Returns the parts of the rectangle where a dirty view below the parent shows the parent's
    /// background, because it has none of its own, in the order of painting.
    [[nodiscard]] std::vector<ZRect> FindExposed(const ZRect& rect) const;

private:
    void AddExposed(std::vector<ZRect>& out, const ZPoint& offset, const ZRect& rect) const;

    mutable ZLock mLock{"childviewlock"};
    Views mViews;  // guarded by mLock
};

}  // namespace orvane
