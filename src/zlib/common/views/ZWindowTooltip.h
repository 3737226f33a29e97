// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZPoint.h"

#include <memory>

namespace orvane
{

class ZTooltip;
class ZView;
class ZWindow;
struct ZRect;

/// A window's tooltip, which exists from the first view with a tip on, and what the window's events
/// mean to it. [interface thread, with the interface lock]
class ZWindowTooltip
{
public:
    /// The window owns this object.
    explicit ZWindowTooltip(ZWindow& window);
    ~ZWindowTooltip();

    /// Registers the rectangle of a view that has a tip, in window coordinates. Not null.
    void AddTool(ZView* view, const ZRect& rect);
    /// Ignores a view that has no tip.
    void RemoveTool(ZView* view);
    void Hide();
    /// Reports what the mouse does while no dialog blocks the window. While a view is dragged, the
    /// views that the pointer passes show no tips.
    void HandleMouse(ZNativeMouseEvent::Action action, const ZPoint& point, bool isDragging);
    void HandleKey();
    /// Returns null while no view has had a tip.
    [[nodiscard]] ZTooltip* Get() const { return mTooltip.get(); }

private:
    ZWindow& mWindow;
    std::unique_ptr<ZTooltip> mTooltip;
};

}  // namespace orvane
