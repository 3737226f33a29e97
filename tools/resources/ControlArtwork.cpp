// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/ControlArtwork.h"

#include "tools/resources/ArtworkPaint.h"
#include "tools/resources/PixelFont.h"

namespace orvane
{

namespace
{

constexpr Box kWell{0.0, 0.0, 14.0, 13.0};
constexpr Box kGlass{2.0, 2.0, 10.0, 9.0};
/// The dark glass of an unchecked box is hardly visible on the dark panel; its rim is.
constexpr Ink kRimOfOffBox{0x8C9A90};

void paintGlass(cairo_t* context, BoxState state)
{
    addRoundedBox(context, kGlass, 2.0);
    switch (state) {
    case BoxState::kOn:
        fillDown(context, {{2.0, {0x7FE287}}, {6.0, {0x33BC48}}, {11.0, {0x1A8A30}}});
        break;
    case BoxState::kOff:
        fillDown(context, {{2.0, {0x0C1A11}}, {4.0, {0x14291B}}, {11.0, {0x234530}}});
        break;
    case BoxState::kDisabled:
        fillDown(context, {{2.0, {0x2E2E2E}}, {11.0, {0x464646}}});
        break;
    }
}

void addTick(cairo_t* context, double drop)
{
    cairo_move_to(context, 4.25, 6.25 + drop);
    cairo_line_to(context, 6.25, 8.5 + drop);
    cairo_line_to(context, 10.0, 4.0 + drop);
}

void paintTick(cairo_t* context)
{
    const ArtworkScope scope(context);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    addTick(context, 1.0);
    stroke(context, {0x053010, 0.6}, 1.75);
    addTick(context, 0.0);
    stroke(context, {0xFFFFFF}, 1.75);
}

constexpr Box kThumb{1.0, 1.0, 31.0, 15.0};
constexpr double kThumbRadius = 5.0;

void paintShadowOfThumb(cairo_t* context)
{
    for (const double drop : {1.0, 2.0, 3.0}) {
        addRoundedBox(context, kThumb.moved(0.0, drop), kThumbRadius);
        fill(context, {0x000000, 0.20});
    }
}

/// A groove is a dark line between two light ones; the middle one is the pointer and red.
void paintGroove(cairo_t* context, double left, const Ink& ink)
{
    constexpr double kTop = 4.0;
    constexpr double kHeight = 9.0;
    fillBox(context, {left - 1.0, kTop, 3.0, kHeight}, {0xFFFFFF, 0.45});
    fillBox(context, {left, kTop, 1.0, kHeight}, ink);
}

constexpr Box kButton{0.0, 0.0, 72.0, 14.0};
constexpr double kButtonRadius = 6.0;

/// The same metal as that of the menus: light, with a step in the middle.
void paintButtonFace(cairo_t* context, ButtonState state)
{
    addRoundedBox(context, kButton.moved(0.0, 1.0), kButtonRadius);
    fill(context, {0xFFFFFF, 0.22});
    addRoundedBox(context, kButton, kButtonRadius);
    switch (state) {
    case ButtonState::kOff:
        fillDown(context, {{1.0, {0xF4F4F4}},
                           {2.0, {0xE6E6E6}},
                           {7.0, {0xDADADA}},
                           {7.01, {0xC8C8C8}},
                           {11.0, {0xCACACA}},
                           {13.0, {0xDCDCDC}}});
        break;
    case ButtonState::kOver:
        fillDown(context, {{1.0, {0xFFFFFF}},
                           {2.0, {0xFBFBFB}},
                           {7.0, {0xF4F4F4}},
                           {7.01, {0xE6E6E6}},
                           {11.0, {0xE9E9E9}},
                           {13.0, {0xF6F6F6}}});
        break;
    case ButtonState::kDown:
        fillDown(context,
                 {{0.0, {0x6A6A6A}}, {2.0, {0x8C8C8C}}, {4.0, {0xA0A0A0}}, {13.0, {0xBEBEBE}}});
        break;
    }
    outlineRoundedBox(context, kButton, kButtonRadius, {0x000000, 0.6});
}

void paintLamp(cairo_t* context, double x, double y, ButtonLamp lamp)
{
    if (lamp == ButtonLamp::kNone)
        return;
    const bool isLit = lamp == ButtonLamp::kLit;
    if (isLit) {
        addDisc(context, x, y, 5.0);
        fill(context, {0x52F070, 0.40});
    }
    addDisc(context, x, y, 3.5);
    fill(context, {0x182019});
    addDisc(context, x, y, 2.5);
    if (isLit)
        fillDown(context, {{y - 2.5, {0xE2FFE6}}, {y, {0x6CFF84}}, {y + 2.5, {0x22CC44}}});
    else
        fillDown(context, {{y - 2.5, {0x1E3625}}, {y + 2.5, {0x3A6A48}}});
}

}  // namespace

void paintCheckBox(cairo_t* context, BoxState state)
{
    addRoundedBox(context, kWell.moved(0.0, 1.0), 3.5);
    fill(context, {0xFFD8D0, 0.22});
    addRoundedBox(context, kWell, 3.5);
    fillDown(context, {{0.0, {0x000000}}, {13.0, {0x262223}}});
    paintGlass(context, state);
    if (state == BoxState::kOff)
        outlineRoundedBox(context, kWell, 3.5, kRimOfOffBox);
    if (state != BoxState::kOn)
        return;
    fillBox(context, {4.0, 2.0, 6.0, 1.0}, {0xFFFFFF, 0.45});
    paintTick(context);
}

void paintSliderThumb(cairo_t* context)
{
    paintShadowOfThumb(context);
    addRoundedBox(context, kThumb, kThumbRadius);
    fillDown(context, {{2.0, {0xFAFAFA}},
                       {3.0, {0xEFEFEF}},
                       {8.0, {0xDCDCDC}},
                       {8.01, {0xC3C3C3}},
                       {13.0, {0xB4B4B4}},
                       {15.0, {0xCBCBCB}}});
    outlineRoundedBox(context, kThumb, kThumbRadius, {0x000000, 0.7});
    paintGroove(context, 12.0, {0x6A6A6A});
    paintGroove(context, 16.0, {0xC4161E});
    paintGroove(context, 20.0, {0x6A6A6A});
}

void paintButton(cairo_t* context, const PixelFont& font, std::string_view label, ButtonState state,
                 ButtonLamp lamp)
{
    constexpr int kLampSpace = 11;
    constexpr int kLabelTop = 4;
    paintButtonFace(context, state);

    const int pressed = state == ButtonState::kDown ? 1 : 0;
    const int space = lamp == ButtonLamp::kNone ? 0 : kLampSpace;
    const int left = (72 - space - font.textWidth(label)) / 2 + space;
    const int top = kLabelTop - 1 + pressed;
    paintLamp(context, 9.5, 7.0, lamp);
    drawPixelText(context, font, label, left, top + 1, {0xFFFFFF, pressed ? 0.25 : 0.75});
    drawPixelText(context, font, label, left, top,
                  {state == ButtonState::kOver ? 0xA01018u : 0x1C1C1Eu});
}

}  // namespace orvane
