// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/BackgroundArtwork.h"

#include "tools/resources/ArtworkPaint.h"

#include <memory>

namespace orvane
{

namespace
{

constexpr double kHeaderBottom = 35.0;
constexpr Box kPanel{6.0, 82.0, 446.0, 342.0};
constexpr double kPanelRadius = 7.0;
// One pixel larger on each side than the views in them.
constexpr Box kKeyboardBed{97.0, 259.0, 298.0, 149.0};
constexpr Box kMeterBed{429.0, 119.0, 12.0, 272.0};

void paintBody(cairo_t* context)
{
    addBox(context, {0.0, 0.0, kBackgroundWidth, kBackgroundHeight});
    fillDown(context, {{kHeaderBottom, {0x84151B}},
                       {kPanel.top, {0x7C141A}},
                       {220.0, {0x6E0F15}},
                       {kBackgroundHeight, {0x48080D}}});

    // A lamp above the middle of the window.
    const std::unique_ptr<cairo_pattern_t, decltype(&cairo_pattern_destroy)> lamp(
        cairo_pattern_create_radial(228.0, 20.0, 20.0, 228.0, 20.0, 330.0), cairo_pattern_destroy);
    cairo_pattern_add_color_stop_rgba(lamp.get(), 0.0, 1.0, 0.55, 0.45, 0.09);
    cairo_pattern_add_color_stop_rgba(lamp.get(), 1.0, 1.0, 0.55, 0.45, 0.0);
    cairo_set_source(context, lamp.get());
    cairo_paint(context);
}

void paintHeader(cairo_t* context)
{
    addBox(context, {0.0, 0.0, kBackgroundWidth, kHeaderBottom});
    fillDown(context,
             {{0.0, {0x343436}}, {10.0, {0x1E1E20}}, {20.0, {0x121213}}, {35.0, {0x070707}}});
}

/// The shadow of the title band on the red below it; the band's lower corners are cut off.
void paintShadowOfTitleBand(cairo_t* context)
{
    constexpr int kDepth = 6;
    for (int drop = 1; drop <= kDepth; ++drop) {
        cairo_move_to(context, 0.0, kHeaderBottom);
        cairo_line_to(context, kBackgroundWidth, kHeaderBottom);
        cairo_line_to(context, kBackgroundWidth - 2.0, 35.0 + drop);
        cairo_line_to(context, kBackgroundWidth - 10.0, 39.0 + drop);
        cairo_line_to(context, kBackgroundWidth - 22.0, 41.0 + drop);
        cairo_line_to(context, 22.0, 41.0 + drop);
        cairo_line_to(context, 10.0, 39.0 + drop);
        cairo_line_to(context, 0.0, 35.0 + drop);
        cairo_close_path(context);
        fill(context, {0x000000, 0.13});
    }
}

/// A panel sunk into the red: dark, darkest below its upper edge, with light on its lower edge.
void paintPanel(cairo_t* context)
{
    addRoundedBox(context, kPanel.moved(0.0, 1.0), kPanelRadius);
    fill(context, {0xFFB0A0, 0.16});
    addRoundedBox(context, kPanel, kPanelRadius);
    fillDown(context, {{kPanel.top, {0x0C0506, 0.94}},
                       {kPanel.top + 5.0, {0x140A0C, 0.90}},
                       {kPanel.top + 60.0, {0x180D0F, 0.86}},
                       {kPanel.bottom(), {0x140B0D, 0.80}}});
    outlineRoundedBox(context, kPanel, kPanelRadius, {0x000000, 0.55});
}

void paintBed(cairo_t* context, const Box& bed)
{
    outlineRoundedBox(context, bed.shrunk(-1.0), 2.0, {0x000000, 0.35});
    fillBox(context, {bed.left, bed.bottom(), bed.width, 1.0}, {0xFFD0C4, 0.22});
    fillBox(context, bed, {0x070405});
}

/// Makes the corner pixels transparent, since cairo writes a PNG without a transparent pixel as one
/// without alpha, and all pictures here have alpha. The corners lie outside the window.
void clearCorners(cairo_t* context)
{
    const ArtworkScope scope(context);
    cairo_set_operator(context, CAIRO_OPERATOR_CLEAR);
    for (const double left : {0.0, kBackgroundWidth - 1.0})
        for (const double top : {0.0, kBackgroundHeight - 1.0})
            addBox(context, {left, top, 1.0, 1.0});
    cairo_fill(context);
}

}  // namespace

void paintBackground(cairo_t* context)
{
    paintBody(context);
    paintHeader(context);
    paintShadowOfTitleBand(context);
    paintPanel(context);
    paintBed(context, kKeyboardBed);
    paintBed(context, kMeterBed);
    clearCorners(context);
}

}  // namespace orvane
