// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZDrawingContext;

/// Draws over a view after its subviews. [interface thread]
class ZOverlay
{
public:
    ZOverlay() = default;
    ZOverlay(const ZOverlay&) = delete;
    ZOverlay& operator=(const ZOverlay&) = delete;
    virtual ~ZOverlay() = default;

    /// Draws in the view's coordinates, without a clip to the view.
    virtual void DrawOverlay(ZDrawingContext& context) = 0;
};

}  // namespace orvane
