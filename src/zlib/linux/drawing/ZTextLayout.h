// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZGraphics.h"
#include "zlib/linux/drawing/ZFontCollection.h"

#include <cairo/cairo.h>

#include <cstdint>
#include <mutex>

namespace orvane
{

/// A text set in a font, for one call of drawing or measuring: both are done by this class, so that
/// they agree. Holds the fonts' lock for its life. Where there is no font at all, or the font's
/// height is none, nothing is drawn and the text measures 0.
class ZTextLayout
{
public:
    /// Unbounded. The target, which must outlive it, tells the transform.
    ZTextLayout(cairo_t* target, const ZString& text, const ZFont& font);

    /// Sets it in lines of that many pixels: wrapped, or cut with an ellipsis.
    void Fit(std::int32_t width, const ZGraphics::TextFormat& format);
    /// What the lines take, in Pango's units.
    [[nodiscard]] PangoRectangle GetExtents() const;
    /// From the corner that x, y name, in the target's source colour.
    void Show(double x, double y) const;

private:
    void MakeLayout(const ZString& text, const ZFont& font);

    cairo_t* mTarget;
    std::unique_lock<std::mutex> mLock;
    GObjectPointer<PangoLayout> mLayout;
};

}  // namespace orvane
