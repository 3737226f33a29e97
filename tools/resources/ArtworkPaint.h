// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cairo.h>

#include <initializer_list>
#include <string_view>

namespace orvane
{

class PixelFont;

/// A colour as 0xRRGGBB and how much of it covers what is below, 0 to 1.
struct Ink
{
    unsigned rgb;
    double alpha = 1.0;
};

/// A colour at a place of a gradient, in pixels from the top (or left) of the picture.
struct InkStop
{
    double place;
    Ink ink;
};

/// A rectangle in pixels; whole numbers lie between pixels, so a box of whole numbers is crisp.
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

/// Saves transform and clip of a context for a scope.
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

/// Fill the current path and empty it: with one colour, or with stops from top to bottom or from
/// left to right, in rising order.
void fill(cairo_t* context, const Ink& ink);
void fillDown(cairo_t* context, std::initializer_list<InkStop> stops);
void fillAcross(cairo_t* context, std::initializer_list<InkStop> stops);
void fillBox(cairo_t* context, const Box& box, const Ink& ink);

/// Strokes the current path and empties it.
void stroke(cairo_t* context, const Ink& ink, double width);
void strokeDown(cairo_t* context, std::initializer_list<InkStop> stops, double width);

/// Strokes the border of a box inside it, one pixel wide.
void outlineRoundedBox(cairo_t* context, const Box& box, double radius, const Ink& ink);

/// Draws an ASCII text pixel by pixel; left, top is the corner of its line.
void drawPixelText(cairo_t* context, const PixelFont& font, std::string_view text, int left,
                   int top, const Ink& ink);

}  // namespace orvane
