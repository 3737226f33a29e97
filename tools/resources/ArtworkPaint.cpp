// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/ArtworkPaint.h"

#include "tools/resources/PixelFont.h"

#include <cassert>
#include <memory>
#include <numbers>

namespace orvane
{

namespace
{

struct PatternFreer
{
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};

using Pattern = std::unique_ptr<cairo_pattern_t, PatternFreer>;

struct Channels
{
    double red;
    double green;
    double blue;
};

Channels channelsOf(const Ink& ink)
{
    const auto channel = [&](unsigned shift) { return ((ink.rgb >> shift) & 0xFF) / 255.0; };
    return {channel(16), channel(8), channel(0)};
}

void setInk(cairo_t* context, const Ink& ink)
{
    const Channels channels = channelsOf(ink);
    cairo_set_source_rgba(context, channels.red, channels.green, channels.blue, ink.alpha);
}

enum class Direction
{
    kDown,
    kAcross
};

void setGradient(cairo_t* context, std::initializer_list<InkStop> stops, Direction direction)
{
    assert(stops.size() >= 2);
    const double first = stops.begin()->place;
    const double last = (stops.end() - 1)->place;
    assert(first < last);
    const Pattern gradient(direction == Direction::kDown
                               ? cairo_pattern_create_linear(0.0, first, 0.0, last)
                               : cairo_pattern_create_linear(first, 0.0, last, 0.0));
    for (const InkStop& stop : stops) {
        const Channels channels = channelsOf(stop.ink);
        cairo_pattern_add_color_stop_rgba(gradient.get(), (stop.place - first) / (last - first),
                                          channels.red, channels.green, channels.blue,
                                          stop.ink.alpha);
    }
    cairo_set_source(context, gradient.get());
}

}  // namespace

void addBox(cairo_t* context, const Box& box)
{
    assert(box.width > 0.0 && box.height > 0.0);
    cairo_rectangle(context, box.left, box.top, box.width, box.height);
}

void addRoundedBox(cairo_t* context, const Box& box, double radius)
{
    constexpr double kQuarter = std::numbers::pi / 2.0;
    assert(2.0 * radius <= box.width && 2.0 * radius <= box.height);
    cairo_new_sub_path(context);
    cairo_arc(context, box.left + radius, box.top + radius, radius, 2 * kQuarter, 3 * kQuarter);
    cairo_arc(context, box.right() - radius, box.top + radius, radius, 3 * kQuarter, 4 * kQuarter);
    cairo_arc(context, box.right() - radius, box.bottom() - radius, radius, 0.0, kQuarter);
    cairo_arc(context, box.left + radius, box.bottom() - radius, radius, kQuarter, 2 * kQuarter);
    cairo_close_path(context);
}

void addDisc(cairo_t* context, double x, double y, double radius)
{
    assert(radius > 0.0);
    cairo_new_sub_path(context);
    cairo_arc(context, x, y, radius, 0.0, 2.0 * std::numbers::pi);
    cairo_close_path(context);
}

void fill(cairo_t* context, const Ink& ink)
{
    setInk(context, ink);
    cairo_fill(context);
}

void fillDown(cairo_t* context, std::initializer_list<InkStop> stops)
{
    setGradient(context, stops, Direction::kDown);
    cairo_fill(context);
}

void fillAcross(cairo_t* context, std::initializer_list<InkStop> stops)
{
    setGradient(context, stops, Direction::kAcross);
    cairo_fill(context);
}

void fillBox(cairo_t* context, const Box& box, const Ink& ink)
{
    addBox(context, box);
    fill(context, ink);
}

void stroke(cairo_t* context, const Ink& ink, double width)
{
    setInk(context, ink);
    assert(width > 0.0);
    cairo_set_line_width(context, width);
    cairo_stroke(context);
}

void strokeDown(cairo_t* context, std::initializer_list<InkStop> stops, double width)
{
    setGradient(context, stops, Direction::kDown);
    cairo_set_line_width(context, width);
    cairo_stroke(context);
}

void outlineRoundedBox(cairo_t* context, const Box& box, double radius, const Ink& ink)
{
    addRoundedBox(context, box.shrunk(0.5), radius - 0.5);
    stroke(context, ink, 1.0);
}

void drawPixelText(cairo_t* context, const PixelFont& font, std::string_view text, int left,
                   int top, const Ink& ink)
{
    for (const char letter : text) {
        const PixelGlyph& glyph = font.glyph(static_cast<unsigned char>(letter));
        for (int row = 0; row < PixelFont::kRows; ++row)
            for (int column = 0; column < glyph.width(); ++column)
                if (glyph.isInk(column, row))
                    cairo_rectangle(context, left + column, top + row, 1.0, 1.0);
        left += glyph.width() + PixelFont::kGapColumns;
    }
    fill(context, ink);
}

}  // namespace orvane
