// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZOverlays.h"

#include "zlib/common/views/ZOverlay.h"

#include <algorithm>

namespace orvane
{

bool ZOverlays::Add(const boost::shared_ptr<ZOverlay>& overlay)
{
    if (!overlay || std::ranges::count(mOverlays, overlay) != 0)
        return false;
    mOverlays.push_back(overlay);
    return true;
}

bool ZOverlays::Remove(const boost::shared_ptr<ZOverlay>& overlay)
{
    return std::erase(mOverlays, overlay) != 0;
}

void ZOverlays::Draw(ZDrawingContext& context) const
{
    for (const auto& overlay : mOverlays)
        overlay->DrawOverlay(context);
}

}  // namespace orvane
