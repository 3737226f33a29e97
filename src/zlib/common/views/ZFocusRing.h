// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZRect.h"

namespace orvane
{

class ZDrawingContext;
class ZWindow;

/// The ring around what has the keyboard: a light line between two dark ones, which stands out from
/// any ground. It lies on top of all views, outside the rectangle that it marks.
/// [interface thread, with the interface lock]
class ZFocusRing
{
public:
    /// How far the ring reaches from its rectangle, in units.
    static constexpr int kReach = 4;

    /// The window owns the ring.
    explicit ZFocusRing(ZWindow& window)
        : mWindow(window)
    {
    }

    /// Shows the ring around a rectangle in window coordinates in place of the one before; an empty
    /// rectangle shows none.
    void Place(const ZRect& rect);
    /// Draws what lies in the rectangle update. Drawing it twice changes nothing.
    void Draw(ZDrawingContext& context, const ZRect& update) const;

private:
    [[nodiscard]] ZRect GetOuter() const { return mRect.Inset(-kReach, -kReach); }

    ZWindow& mWindow;
    ZRect mRect;  // empty while no ring is shown
};

}  // namespace orvane
