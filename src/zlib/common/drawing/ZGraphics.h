// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZPen.h"
#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

#include <cstdint>
#include <memory>

namespace orvane
{

class ZFont;
class ZGradientBrush;
class ZImage;
class ZPathOutline;
class ZRegion;
class ZString;

/// The native graphics target: an image with a transform, a clip, a blend mode and anti-aliasing.
/// Implemented per platform; it is the whole interface between drawing and the platform.
///
/// Fills cover the pixels between integer coordinates. Strokes run through the centres of the
/// pixels that integer coordinates name, so that a line one pixel wide is sharp. No operation
/// reports a failure: what cannot be drawn is left out. Coordinates are clamped to +-4 million
/// units.
///
/// Coordinates, sizes of texts and widths are in units, of which the image's device scale makes
/// pixels; above, a pixel of a unit's size is meant. At scales other than 1 the edges of
/// rectangles, clips and pictures are moved to the nearest pixels' edges while the transform only
/// translates, so that neighbours neither overlap nor leave a gap. [interface thread]
class ZGraphics
{
public:
    enum class Align
    {
        kCentre,
        kLeft,
        kRight,
    };
    struct TextFormat
    {
        Align align = Align::kLeft;
        bool truncate = false;  // one line with an ellipsis, instead of wrapping
    };

    /// Draws into image, which must outlive it.
    explicit ZGraphics(ZImage& image);
    ZGraphics(const ZGraphics&) = delete;
    ZGraphics& operator=(const ZGraphics&) = delete;
    ~ZGraphics();

    /// Returns the image's device scale.
    [[nodiscard]] double GetDeviceScale() const;

    /// Draws a line with both end points.
    void StrokeLine(const ZPen& pen, const ZPoint& from, const ZPoint& to);
    /// Draws an outline; the pixels at right and bottom belong to it.
    void StrokeRect(const ZPen& pen, const ZRect& rect);
    void Stroke(const ZPen& pen, const ZPathOutline& path);
    void Fill(const ZColor& color, const ZPathOutline& path);
    void FillRect(const ZColor& color, const ZRect& rect);
    void FillRect(const ZGradientBrush& brush, const ZRect& rect);
    void FillRegion(const ZGradientBrush& brush, const ZRegion& region);
    /// Replaces each colour channel by 255 minus itself; transparent pixels count as black.
    void InvertRect(const ZRect& rect);
    /// Draws the source rectangle of the image, in the image's own units, scaled to the target
    /// rectangle. alpha in [0, 1]
    /// multiplies the alpha of its pixels; values outside are clamped.
    void DrawImage(const ZImage& image, const ZRect& source, const ZRect& target, float alpha);

    /// Draws text from the top of the rectangle. Its layout is one pixel wider and taller than the
    /// rectangle, so that a text fits the size that MeasureText rounded down; text that is taller
    /// than the layout is cut.
    void DrawText(const ZString& text, const ZFont& font, const ZColor& color, const ZRect& rect,
                  const TextFormat& format);
    /// The rectangle of the text on one unbounded line from 0, 0; edges rounded towards 0.
    [[nodiscard]] ZRect MeasureText(const ZString& text, const ZFont& font) const;
    /// The rectangle that DrawText covers when it aligns left; edges rounded towards 0.
    [[nodiscard]] ZRect MeasureText(const ZString& text, const ZFont& font, const ZRect& rect,
                                    bool truncate) const;

    /// Translate, Rotate and Scale prepend to the transform. Each ignores a change that has no
    /// inverse, such as a scale of 0, and returns false.
    bool Translate(double x, double y);
    bool Rotate(double degrees);
    bool Scale(double x, double y);
    void ResetTransform();

    /// True: new pixels blend with the old ones by alpha. False: they replace them, alpha included.
    void SetAlphaBlend(bool on);
    void SetAntiAlias(bool on);
    /// Each SetClip replaces the clip that was set before.
    void SetClip(const ZRect& rect);
    void SetClip(const ZPathOutline& path);

    /// Saves transform, clip, blend mode and anti-aliasing; returns a level for Restore.
    [[nodiscard]] std::int32_t Save();
    /// Restores what Save saved at this level and drops what was saved later. Does nothing for a
    /// level that was restored before.
    void Restore(std::int32_t level);

private:
    struct Native;

    std::unique_ptr<Native> mNative;
};

}  // namespace orvane
