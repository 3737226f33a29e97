// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cairo.h>

#include <string_view>

namespace orvane
{

class PixelFont;

/// How a check box is shown.
enum class BoxState
{
    kOff,
    kOn,
    kDisabled
};

/// How a button is shown.
enum class ButtonState
{
    kOff,
    kOver,  // under the pointer
    kDown   // pressed by the mouse, or latched
};

/// The lamp on a button.
enum class ButtonLamp
{
    kNone,
    kDark,
    kLit
};

/// Paints a check box of green glass, 14 x 14 pixels; when on it is bright and has a tick.
void paintCheckBox(cairo_t* context, BoxState state);

/// Paints the thumb of the horizontal slider with its shadow, 33 x 20 pixels.
void paintSliderThumb(cairo_t* context);

/// Paints a metal button with a label and, unless lamp is kNone, a lamp; 72 x 15 pixels.
void paintButton(cairo_t* context, const PixelFont& font, std::string_view label, ButtonState state,
                 ButtonLamp lamp);

}  // namespace orvane
