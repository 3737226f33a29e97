// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/KeyArtwork.h"

#include "tools/resources/ArtworkPaint.h"

namespace orvane
{

namespace
{

// Half a black key, rounded down, covers the white key to its left; the other half its neighbour.
constexpr double kCutRightFrom = kWhiteKeyWidth - kBlackKeyWidth / 2;
constexpr double kCutLeftTo = kBlackKeyWidth - kBlackKeyWidth / 2;
constexpr double kFaceWidth = kWhiteKeyWidth - 1.0;
constexpr double kFaceBottom = 139.0;      // where the front of a key at rest begins
constexpr double kFaceBottomDown = 143.0;  // the same for a pressed key
constexpr double kFrontRadius = 3.0;

bool isCutLeft(KeyShape shape)
{
    return shape != KeyShape::kCutRight;
}

bool isCutRight(KeyShape shape)
{
    return shape != KeyShape::kCutLeft;
}

/// The narrow upper part of a white key, between the black ones.
Box upperPart(KeyShape shape)
{
    const double left = isCutLeft(shape) ? kCutLeftTo : 0.0;
    const double right = isCutRight(shape) ? kCutRightFrom : kFaceWidth;
    return {left, 0.0, right - left, kBlackKeyHeight};
}

constexpr Box kLowerPart{0.0, kBlackKeyHeight, kFaceWidth, kWhiteKeyHeight - kBlackKeyHeight};

/// Adds the key's whole outline: two boxes of one width, the lower one with round corners.
void addWhiteKey(cairo_t* context, KeyShape shape)
{
    addBox(context, upperPart(shape));
    addBox(context, {0.0, kBlackKeyHeight, kFaceWidth, 10.0});
    addRoundedBox(context, {0.0, 95.0, kFaceWidth, kWhiteKeyHeight - 95.0}, kFrontRadius);
}

void paintIvory(cairo_t* context)
{
    addBox(context, {0.0, 0.0, kFaceWidth, kFaceBottom});
    fillDown(context, {{0.0, {0x9A8F7C}},
                       {3.0, {0xC6BDAB}},
                       {9.0, {0xE4DDCF}},
                       {24.0, {0xF0EBDF}},
                       {100.0, {0xF6F2E8}},
                       {kFaceBottom, {0xFCFAF4}}});
    addBox(context, {0.0, kFaceBottom, kFaceWidth, kWhiteKeyHeight - kFaceBottom});
    fillDown(context, {{kFaceBottom, {0xCFC6B3}}, {kWhiteKeyHeight, {0x998E7A}}});
    fillBox(context, {0.0, kFaceBottom - 1.0, kFaceWidth, 1.0}, {0xFFFFFF});
}

/// A pressed key is lit in amber and lies lower, so that less of its front shows.
void paintLitIvory(cairo_t* context)
{
    addBox(context, {0.0, 0.0, kFaceWidth, kFaceBottomDown});
    fillDown(context, {{0.0, {0x6E4A14}},
                       {4.0, {0xB98638}},
                       {12.0, {0xE3B25E}},
                       {60.0, {0xF7CB7C}},
                       {110.0, {0xFFDC9A}},
                       {kFaceBottomDown, {0xFFE6B4}}});
    addBox(context, {0.0, kFaceBottomDown, kFaceWidth, kWhiteKeyHeight - kFaceBottomDown});
    fillDown(context, {{kFaceBottomDown, {0xB98F4E}}, {kWhiteKeyHeight, {0x7E5C28}}});
}

/// Light on the left edge of a part and shade on its right.
void paintEdges(cairo_t* context, const Box& part)
{
    fillBox(context, {part.left, part.top, 1.0, part.height}, {0xFFFFFF, 0.65});
    fillBox(context, {part.right() - 1.0, part.top, 1.0, part.height}, {0x5E523F, 0.45});
    fillBox(context, {part.right() - 2.0, part.top, 1.0, part.height}, {0x5E523F, 0.14});
}

/// A pressed key lies lower than its neighbours, which shade its edges.
void paintSunkEdges(cairo_t* context, const Box& part)
{
    const auto shade = [&](double column, double alpha) {
        fillBox(context, {part.left + column, part.top, 1.0, part.height}, {0x3A2004, alpha});
        fillBox(context, {part.right() - 1.0 - column, part.top, 1.0, part.height},
                {0x3A2004, alpha});
    };
    shade(0.0, 0.55);
    shade(1.0, 0.28);
    shade(2.0, 0.12);
}

/// The shadow of a black key on a white one: below its front edge and a little beside it.
void paintShadowOfBlackKey(cairo_t* context, double left, double right)
{
    addBox(context, {left, kBlackKeyHeight, right - left, 7.0});
    fillDown(context,
             {{kBlackKeyHeight, {0x2A1E10, 0.50}}, {kBlackKeyHeight + 7.0, {0x2A1E10, 0.0}}});
}

void paintShadows(cairo_t* context, KeyShape shape)
{
    if (isCutLeft(shape)) {
        paintShadowOfBlackKey(context, 0.0, kCutLeftTo - 1.0);
        addBox(context, {kCutLeftTo, 0.0, 4.0, kBlackKeyHeight});
        fillAcross(context, {{kCutLeftTo, {0x2A1E10, 0.35}}, {kCutLeftTo + 4.0, {0x2A1E10, 0.0}}});
    }
    if (isCutRight(shape))
        paintShadowOfBlackKey(context, kCutRightFrom + 1.0, kFaceWidth);
}

/// The mark of a note of the scale: a drop of red lacquer in a shallow dip.
void paintRedDot(cairo_t* context, double x, double y, double radius, const Ink& rim)
{
    addDisc(context, x, y + 1.0, radius + 1.0);
    fill(context, rim);
    addDisc(context, x, y, radius + 1.0);
    fill(context, {0x4A0408, 0.85});
    addDisc(context, x, y, radius);
    fillDown(context, {{y - radius, {0xF2453F}}, {y, {0xD41C22}}, {y + radius, {0x9C0C14}}});

    const ArtworkScope scope(context);
    cairo_translate(context, x, y - radius * 0.48);
    cairo_scale(context, 1.0, 0.6);
    addDisc(context, 0.0, 0.0, radius * 0.58);
    fillDown(context, {{-radius * 0.6, {0xFFFFFF, 0.75}}, {radius * 0.6, {0xFFFFFF, 0.10}}});
}

constexpr Box kEbony{1.0, 0.0, kBlackKeyWidth - 2.0, kBlackKeyHeight - 1.0};
constexpr double kEbonyRadius = 3.0;
constexpr double kEbonySlope = 3.0;
constexpr double kEbonySlopeDown = 1.0;  // smaller, so that the name fits on the lit top
constexpr double kTopBottom = 79.0;
constexpr double kTopBottomDown = 84.0;

/// The body, closed at its foot by round corners, and the gap around it.
void paintEbonyBody(cairo_t* context)
{
    fillBox(context, {0.0, 0.0, kBlackKeyWidth, kBlackKeyHeight - 3.0}, {0x000000, 0.75});
    addRoundedBox(context, {0.0, kBlackKeyHeight - 8.0, kBlackKeyWidth, 8.0}, kEbonyRadius);
    fill(context, {0x000000, 0.75});
    addBox(context, {kEbony.left, 0.0, kEbony.width, 80.0});
    addRoundedBox(context, {kEbony.left, 70.0, kEbony.width, kEbony.bottom() - 70.0}, kEbonyRadius);
    fill(context, {0x0B0A0B});
}

/// The flat top of a key, which stands back from its sides by a slope.
Box flatTop(double slope, double bottom)
{
    return {kEbony.left + slope, 0.0, kEbony.width - 2 * slope, bottom};
}

void addFlatTop(cairo_t* context, const Box& top)
{
    addBox(context, {top.left, top.top, top.width, top.height - 10.0});
    addRoundedBox(context, {top.left, top.bottom() - 20.0, top.width, 20.0}, 2.0);
}

void paintEbonyTop(cairo_t* context)
{
    const Box top = flatTop(kEbonySlope, kTopBottom);
    addFlatTop(context, top);
    fillDown(context,
             {{0.0, {0x0A090A}}, {6.0, {0x1C1A1C}}, {50.0, {0x2A282A}}, {kTopBottom, {0x464346}}});
    fillBox(context, {top.left, 0.0, 1.0, top.height - 2.0}, {0xFFFFFF, 0.12});
    fillBox(context, {top.left + 2.0, kTopBottom - 1.0, top.width - 4.0, 1.0}, {0xFFFFFF, 0.50});
    addBox(context, {top.left, kTopBottom + 1.0, top.width, 7.0});
    fillDown(context, {{kTopBottom + 1.0, {0x2E2C2E}}, {kTopBottom + 8.0, {0x0B0A0B}}});
}

void paintLitEbonyTop(cairo_t* context)
{
    const Box top = flatTop(kEbonySlopeDown, kTopBottomDown);
    addFlatTop(context, top);
    fillDown(context, {{0.0, {0x5C3C0C}},
                       {4.0, {0xA87423}},
                       {10.0, {0xD09B40}},
                       {50.0, {0xE5B054}},
                       {kTopBottomDown, {0xFFD27E}}});
    fillBox(context, {top.left, 0.0, 1.0, top.height - 2.0}, {0x2A1500, 0.45});
    fillBox(context, {top.right() - 1.0, 0.0, 1.0, top.height - 2.0}, {0x2A1500, 0.45});
}

}  // namespace

void paintWhiteKey(cairo_t* context, KeyShape shape, KeyState state)
{
    const ArtworkScope scope(context);
    addWhiteKey(context, shape);
    cairo_clip(context);
    if (state == KeyState::kDown) {
        paintLitIvory(context);
        paintSunkEdges(context, upperPart(shape));
        paintSunkEdges(context, kLowerPart);
    } else {
        paintIvory(context);
        paintEdges(context, upperPart(shape));
        paintEdges(context, kLowerPart);
    }
    paintShadows(context, shape);
    if (state == KeyState::kScale)
        paintRedDot(context, 20.0, 119.0, 6.0, {0xFFFFFF});
}

void paintBlackKey(cairo_t* context, KeyState state)
{
    paintEbonyBody(context);
    if (state == KeyState::kDown)
        paintLitEbonyTop(context);
    else
        paintEbonyTop(context);
    if (state == KeyState::kScale)
        paintRedDot(context, 12.5, 65.5, 4.5, {0xFFFFFF, 0.18});
}

}  // namespace orvane
