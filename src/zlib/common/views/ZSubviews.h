// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLock.h"
#include "zlib/common/objects/ZPoint.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>
#include <vector>

namespace orvane
{

class ZView;

/// The children of a view in their order, the first painted first and the last on top, with a lock
/// of their own. Points are in the parent's coordinates. [interface thread]
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
    /// Returns null when there is none at that index.
    [[nodiscard]] boost::shared_ptr<ZView> At(std::int32_t index) const;
    /// Returns -1 when the view is not in the list.
    [[nodiscard]] std::int32_t IndexOf(const ZView* view) const;
    [[nodiscard]] std::int32_t Count() const;
    /// Returns the first view of that name in the trees below, depth first; null when there is
    /// none.
    [[nodiscard]] boost::shared_ptr<ZView> Find(std::string_view name) const;
    /// Returns the visible child on top at a point, edges included; null when there is none.
    [[nodiscard]] boost::shared_ptr<ZView> FindTop(const ZPoint& point) const;
    /// Passes the point on to HitTest of the first visible child there, under the lock.
    void HitTestFirst(ZView*& out, const ZPoint& point) const;

private:
    mutable ZLock mLock{"childviewlock"};
    Views mViews;  // guarded by mLock
};

}  // namespace orvane
