// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/LogoArtwork.h"

#include "tools/resources/ArtworkPaint.h"
#include "tools/resources/PixelFont.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>
#include <string_view>
#include <vector>

namespace orvane
{

namespace
{

/// A point of a letter, in pixels from the middle of its left stem and from the top of the picture.
struct PenPoint
{
    double x;
    double y;
};

/// One line of the pen; corners are rounded unless the letter is sharp.
using PenLine = std::vector<PenPoint>;

struct PenLetter
{
    double width;  // from the middle of the leftmost stem to that of the rightmost
    double cornerRadius;
    std::vector<PenLine> lines;
};

// Letters are drawn with a pen two pixels wide along whole numbers, so stems and bars are crisp.
constexpr double kPenWidth = 2.0;
constexpr double kLetterGap = 2.0;
constexpr double kCapitalTop = 3.0;
constexpr double kSmallTop = 8.0;
constexpr double kBar = 12.0;
constexpr double kBase = 17.0;
constexpr double kFoot = kBase + 1.0;  // where a stem ends

const std::map<char, PenLetter>& penLetters()
{
    static const std::map<char, PenLetter> letters{
        {'C', {9, 5, {{{10, kCapitalTop}, {0, kCapitalTop}, {0, kBase}, {10, kBase}}}}},
        {'M',
         {12, 0, {{{0, kFoot}, {0, kCapitalTop}, {6, kBar - 1}, {12, kCapitalTop}, {12, kFoot}}}}},
        {'a',
         {8,
          3,
          {{{1, kSmallTop}, {8, kSmallTop}, {8, kFoot}},
           {{8, kBar}, {0, kBar}, {0, kBase}, {8, kBase}}}}},
        {'e',
         {8,
          3,
          {{{0, kBar + 1},
            {8, kBar + 1},
            {8, kSmallTop},
            {0, kSmallTop},
            {0, kBase},
            {8, kBase}}}}},
        {'i', {0, 0, {{{0, kSmallTop - 1}, {0, kFoot}}, {{0, 3}, {0, 5}}}}},
        {'l', {0, 0, {{{0, kCapitalTop - 1}, {0, kFoot}}}}},
        {'n',
         {8, 4, {{{0, kSmallTop - 1}, {0, kFoot}}, {{0, kSmallTop}, {8, kSmallTop}, {8, kFoot}}}}},
        {'o',
         {8,
          4,
          {{{4, kSmallTop},
            {8, kSmallTop},
            {8, kBase},
            {0, kBase},
            {0, kSmallTop},
            {4, kSmallTop}}}}},
        {'r', {5, 4, {{{0, kSmallTop - 1}, {0, kFoot}}, {{0, kSmallTop}, {6, kSmallTop}}}}},
        {'t',
         {5,
          4,
          {{{1, kCapitalTop + 1}, {1, kBase}, {6, kBase}}, {{-1, kSmallTop}, {6, kSmallTop}}}}},
    };
    return letters;
}

double distance(const PenPoint& from, const PenPoint& to)
{
    return std::hypot(to.x - from.x, to.y - from.y);
}

PenPoint pointTowards(const PenPoint& from, const PenPoint& to, double length)
{
    const double part = length / distance(from, to);
    return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
}

/// Rounds a corner with a curve that begins and ends at the distance radius from it.
void addCorner(cairo_t* context, const PenPoint& before, const PenPoint& corner,
               const PenPoint& after, double radius)
{
    constexpr double kRoundness =
        0.5523;  // length of the control arms, in radii, for a quarter circle
    radius = std::min({radius, distance(before, corner), distance(corner, after) / 2.0});
    if (radius <= 0.0) {
        cairo_line_to(context, corner.x, corner.y);
        return;
    }
    const PenPoint start = pointTowards(corner, before, radius);
    const PenPoint first = pointTowards(corner, before, radius * (1.0 - kRoundness));
    const PenPoint second = pointTowards(corner, after, radius * (1.0 - kRoundness));
    const PenPoint end = pointTowards(corner, after, radius);
    cairo_line_to(context, start.x, start.y);
    cairo_curve_to(context, first.x, first.y, second.x, second.y, end.x, end.y);
}

void addPenLine(cairo_t* context, std::span<const PenPoint> line, double cornerRadius)
{
    cairo_move_to(context, line.front().x, line.front().y);
    for (std::size_t index = 1; index + 1 < line.size(); ++index)
        addCorner(context, line[index - 1], line[index], line[index + 1], cornerRadius);
    cairo_line_to(context, line.back().x, line.back().y);
}

/// Adds a word to the path and moves the origin behind its last letter.
void addWord(cairo_t* context, std::string_view word)
{
    for (const char name : word) {
        const PenLetter& letter = penLetters().at(name);
        for (const PenLine& line : letter.lines)
            addPenLine(context, line, letter.cornerRadius);
        cairo_translate(context, letter.width + kPenWidth + kLetterGap, 0.0);
    }
}

struct Metal
{
    Ink edge, upper, lower, foot;
};

constexpr Metal kSteel{{0xFFFFFF}, {0xE4E4E7}, {0xAFAFB6}, {0xD9D9DD}};
constexpr Metal kRed{{0xFF9A8C}, {0xF04A48}, {0xC01C24}, {0xE23A3C}};

void paintWord(cairo_t* context, std::string_view word, double left, const Metal& metal)
{
    const ArtworkScope scope(context);
    cairo_set_miter_limit(context, 4.0);
    for (const bool isShadow : {true, false}) {
        const ArtworkScope layer(context);
        cairo_translate(context, left, isShadow ? 1.0 : 0.0);
        addWord(context, word);
        if (isShadow)
            stroke(context, {0x000000, 0.85}, kPenWidth);
        else
            strokeDown(
                context,
                {{2.0, metal.edge}, {5.0, metal.upper}, {11.0, metal.lower}, {18.0, metal.foot}},
                kPenWidth);
    }
}

void paintRing(cairo_t* context, double x, double y, double radius)
{
    addDisc(context, x, y + 1.0, radius);
    stroke(context, {0x000000, 0.85}, 2.0);
    addDisc(context, x, y, radius);
    strokeDown(context, {{y - radius - 1.0, {0xFFFFFF}}, {y, {0xB4B4BA}}, {y + radius, {0x85858C}}},
               2.0);
}

/// Half of the vane: its tip, the end of one wing, and the notch of its tail, around 0, 0.
void addVaneHalf(cairo_t* context, double side)
{
    cairo_move_to(context, 0.0, -6.0);
    cairo_line_to(context, side * 4.0, 4.5);
    cairo_line_to(context, 0.0, 2.0);
    cairo_close_path(context);
}

void paintVane(cairo_t* context, double x, double y)
{
    constexpr double kTilt = 0.61;  // radians
    const ArtworkScope scope(context);
    cairo_translate(context, x, y);
    cairo_rotate(context, kTilt);
    addVaneHalf(context, -1.0);
    fill(context, {0xFF6A5E});
    addVaneHalf(context, 1.0);
    fill(context, {0xB5151D});
}

}  // namespace

void paintProductLogo(cairo_t* context)
{
    paintWord(context, "Cantorel", 2.0, kSteel);
    paintWord(context, "Mini", 92.0, kRed);
}

void paintMakerLogo(cairo_t* context, const PixelFont& font)
{
    constexpr std::string_view kName = "ORVANE";
    constexpr int kNameTop = 20;
    constexpr double kMiddle = 15.5;
    paintRing(context, kMiddle, 9.5, 8.0);
    paintVane(context, kMiddle, 10.0);
    const int left = (31 - font.textWidth(kName)) / 2;
    drawPixelText(context, font, kName, left, kNameTop + 1, {0x000000, 0.85});
    drawPixelText(context, font, kName, left, kNameTop, {0xB4B4BA});
}

}  // namespace orvane
