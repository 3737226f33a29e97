// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZGraphics.h"
#include "zlib/linux/drawing/ZFontCollection.h"

#include <cairo/cairo.h>

#include <cstdint>
#include <mutex>

namespace orvane
{

/// A text set in a font, for one call of drawing or measuring, so that both agree. Holds the lock
/// of ZFontCollection while it lives. If the system has no font, or the font's height is not
/// positive, nothing is drawn and the text measures 0.
class ZTextLayout
{
public:
    /// Lays the text out on one unbounded line. The target gives the transform and must outlive
    /// the layout.
    ZTextLayout(cairo_t* target, const ZString& text, const ZFont& font);

    /// Lays the text out again in lines of width pixels: wrapped, or cut with an ellipsis.
    void Fit(std::int32_t width, const ZGraphics::TextFormat& format);
    /// The logical rectangle of all lines, in Pango units.
    [[nodiscard]] PangoRectangle GetExtents() const;
    /// Draws the text in the target's source colour with its top left corner at x, y.
    void Show(double x, double y) const;

private:
    void MakeLayout(const ZString& text, const ZFont& font);

    cairo_t* mTarget;
    std::unique_lock<std::mutex> mLock;
    GObjectPointer<PangoLayout> mLayout;
};

}  // namespace orvane
