// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cairo.h>

#include <initializer_list>
#include <string_view>

namespace orvane
{

class PixelFont;

/// A colour as 0xRRGGBB with its opacity, from 0 to 1.
struct Ink
{
    unsigned rgb;
    double alpha = 1.0;
};

/// A colour stop of a gradient; place is in pixels from the top or left edge of the picture.
struct InkStop
{
    double place;
    Ink ink;
};

/// A rectangle in pixels. Whole numbers lie on the borders between pixels, so the edges of a box of
/// whole numbers are sharp.
struct Box
{
    double left;
    double top;
    double width;
    double height;

    [[nodiscard]] double right() const { return left + width; }
    [[nodiscard]] double bottom() const { return top + height; }
    [[nodiscard]] Box shrunk(double by) const
    {
        return {left + by, top + by, width - 2 * by, height - 2 * by};
    }
    [[nodiscard]] Box moved(double x, double y) const { return {left + x, top + y, width, height}; }
};

/// Saves the transform and clip of a context and restores them at the end of the scope.
class ArtworkScope
{
public:
    explicit ArtworkScope(cairo_t* context)
        : mContext(context)
    {
        cairo_save(mContext);
    }
    ~ArtworkScope() { cairo_restore(mContext); }
    ArtworkScope(const ArtworkScope&) = delete;
    ArtworkScope& operator=(const ArtworkScope&) = delete;

private:
    cairo_t* mContext;
};

void addBox(cairo_t* context, const Box& box);
void addRoundedBox(cairo_t* context, const Box& box, double radius);
void addDisc(cairo_t* context, double x, double y, double radius);

// These fill the current path and clear it: with one colour, or with a gradient of two or more
// stops in rising order, from top to bottom (fillDown) or from left to right (fillAcross).
void fill(cairo_t* context, const Ink& ink);
void fillDown(cairo_t* context, std::initializer_list<InkStop> stops);
void fillAcross(cairo_t* context, std::initializer_list<InkStop> stops);
void fillBox(cairo_t* context, const Box& box, const Ink& ink);

// These stroke the current path and clear it; width is in pixels, above 0.
void stroke(cairo_t* context, const Ink& ink, double width);
void strokeDown(cairo_t* context, std::initializer_list<InkStop> stops, double width);

/// Strokes a border one pixel wide along the inner side of a box.
void outlineRoundedBox(cairo_t* context, const Box& box, double radius, const Ink& ink);

/// Draws an ASCII text pixel by pixel; left and top are the corner of its line. Throws
/// std::out_of_range if the font lacks one of its characters.
void drawPixelText(cairo_t* context, const PixelFont& font, std::string_view text, int left,
                   int top, const Ink& ink);

}  // namespace orvane
