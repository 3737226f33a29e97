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

/// The native graphics target: an image with a transform, a clip, a blend mode and smoothing.
/// Carried by the platform, and all that drawing asks of it.
///
/// Fills cover whole pixels between integer coordinates; strokes run through the middle of the
/// pixels that integer coordinates name, so that a line one pixel wide is sharp. Nothing here
/// fails: what cannot be drawn is not drawn. Coordinates beyond four million pixels stay there.
/// [interface thread]
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

    /// Both end points included.
    void StrokeLine(const ZPen& pen, const ZPoint& from, const ZPoint& to);
    /// Through the pixels of right and bottom too.
    void StrokeRect(const ZPen& pen, const ZRect& rect);
    void Stroke(const ZPen& pen, const ZPathOutline& path);
    void Fill(const ZColor& color, const ZPathOutline& path);
    void FillRect(const ZColor& color, const ZRect& rect);
    void FillRect(const ZGradientBrush& brush, const ZRect& rect);
    void FillRegion(const ZGradientBrush& brush, const ZRegion& region);
    /// Each colour to 255 less itself; what was transparent counts as black.
    void InvertRect(const ZRect& rect);
    /// Scales the part source of the image to target. alpha in [0, 1] is multiplied to its own.
    void DrawImage(const ZImage& image, const ZRect& source, const ZRect& target, float alpha);

    /// From the top of the rectangle, which counts a pixel more to the right.
    void DrawText(const ZString& text, const ZFont& font, const ZColor& color, const ZRect& rect,
                  const TextFormat& format);
    /// What an unbounded text takes, from 0, 0; rounded towards 0.
    [[nodiscard]] ZRect MeasureText(const ZString& text, const ZFont& font) const;
    /// What DrawText takes when it aligns left; rounded towards 0.
    [[nodiscard]] ZRect MeasureText(const ZString& text, const ZFont& font, const ZRect& rect,
                                    bool truncate) const;

    /// Each comes before the transform that was there. One that could not be undone, such as a
    /// scale of 0, is ignored and false.
    bool Translate(double x, double y);
    bool Rotate(double degrees);
    bool Scale(double x, double y);
    void ResetTransform();

    /// False: new pixels replace the old ones, alpha included.
    void SetAlphaBlend(bool on);
    void SetAntiAlias(bool on);
    /// In place of the clip that was there.
    void SetClip(const ZRect& rect);
    void SetClip(const ZPathOutline& path);

    /// Keeps transform, clip, blend mode and smoothing; gives back a level for Restore.
    [[nodiscard]] std::int32_t Save();
    /// Back to what Save kept, and drops what was kept since. A level that was restored before
    /// does nothing.
    void Restore(std::int32_t level);

private:
    struct Native;

    std::unique_ptr<Native> mNative;
};

}  // namespace orvane
