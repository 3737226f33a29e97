// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZDrawingContext;

/// Draws over a view, after what lies in it. [interface thread]
class ZOverlay
{
public:
    ZOverlay() = default;
    ZOverlay(const ZOverlay&) = delete;
    ZOverlay& operator=(const ZOverlay&) = delete;
    virtual ~ZOverlay() = default;

    /// In the coordinates of the view, not clipped to it.
    virtual void DrawOverlay(ZDrawingContext& context) = 0;
};

}  // namespace orvane
