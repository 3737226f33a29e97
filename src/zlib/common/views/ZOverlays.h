// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <vector>

namespace orvane
{

class ZDrawingContext;
class ZOverlay;

/// The overlays of a view, in the order in which they are drawn. [interface thread]
class ZOverlays
{
public:
    /// False for null and for an overlay that is there already.
    [[nodiscard]] bool Add(const boost::shared_ptr<ZOverlay>& overlay);
    /// False for an overlay that is not there.
    [[nodiscard]] bool Remove(const boost::shared_ptr<ZOverlay>& overlay);
    void Draw(ZDrawingContext& context) const;

private:
    std::vector<boost::shared_ptr<ZOverlay>> mOverlays;
};

}  // namespace orvane
