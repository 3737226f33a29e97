// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/ArtworkTable.h"

#include "tools/resources/BackgroundArtwork.h"
#include "tools/resources/ControlArtwork.h"
#include "tools/resources/KeyArtwork.h"
#include "tools/resources/LogoArtwork.h"

#include <cassert>
#include <stdexcept>

namespace orvane
{

namespace
{

Artwork checkBox(const char* name, BoxState state)
{
    return {name, 14, 14,
            [=](cairo_t* context, const PixelFont&) { paintCheckBox(context, state); }};
}

Artwork button(const char* name, const char* label, ButtonState state,
               ButtonLamp lamp = ButtonLamp::kNone)
{
    return {name, 72, 15, [=](cairo_t* context, const PixelFont& font) {
                paintButton(context, font, label, state, lamp);
            }};
}

Artwork whiteKey(const char* name, KeyShape shape, KeyState state)
{
    return {name, kWhiteKeyWidth, kWhiteKeyHeight,
            [=](cairo_t* context, const PixelFont&) { paintWhiteKey(context, shape, state); }};
}

Artwork blackKey(const char* name, KeyState state)
{
    return {name, kBlackKeyWidth, kBlackKeyHeight,
            [=](cairo_t* context, const PixelFont&) { paintBlackKey(context, state); }};
}

}  // namespace

const std::vector<Artwork>& artworkTable()
{
    static const std::vector<Artwork> table{
        {"RedGradientBlackTop.png", kBackgroundWidth, kBackgroundHeight,
         [](cairo_t* context, const PixelFont&) { paintBackground(context); }},
        {"KestruneMiniLogo.png", 135, 20,
         [](cairo_t* context, const PixelFont&) { paintProductLogo(context); }},
        {"OrvaneLogoPluginHeader.png", 31, 27, paintMakerLogo},
        checkBox("GreenCheckBoxOn.png", BoxState::kOn),
        checkBox("GreenCheckBoxOff.png", BoxState::kOff),
        checkBox("CheckBoxDisabled.png", BoxState::kDisabled),
        {"MetalHorizSliderThumb.png", 33, 20,
         [](cairo_t* context, const PixelFont&) { paintSliderThumb(context); }},
        button("MIDI_Input72_On.png", "MIDI INPUT", ButtonState::kDown, ButtonLamp::kLit),
        button("MIDI_Input72_Off.png", "MIDI INPUT", ButtonState::kOff, ButtonLamp::kDark),
        button("MIDI_Input72_Over.png", "MIDI INPUT", ButtonState::kOver, ButtonLamp::kDark),
        button("Reset72_Off.png", "RESET", ButtonState::kOff),
        button("Reset72_Over.png", "RESET", ButtonState::kOver),
        button("Reset72_Down.png", "RESET", ButtonState::kDown),
        button("Add_Scale72_Off.png", "ADD SCALE", ButtonState::kOff),
        button("Add_Scale72_Over.png", "ADD SCALE", ButtonState::kOver),
        button("Add_Scale72_Down.png", "ADD SCALE", ButtonState::kDown),
        whiteKey("nk1.png", KeyShape::kCutRight, KeyState::kRest),
        whiteKey("nk2.png", KeyShape::kCutBoth, KeyState::kRest),
        whiteKey("nk3.png", KeyShape::kCutLeft, KeyState::kRest),
        blackKey("nk4.png", KeyState::kRest),
        whiteKey("nkl1_RedDot.png", KeyShape::kCutRight, KeyState::kScale),
        whiteKey("nkl2_RedDot.png", KeyShape::kCutBoth, KeyState::kScale),
        whiteKey("nkl3_RedDot.png", KeyShape::kCutLeft, KeyState::kScale),
        blackKey("nkl4_RedDot.png", KeyState::kScale),
        whiteKey("nkd1.png", KeyShape::kCutRight, KeyState::kDown),
        whiteKey("nkd2.png", KeyShape::kCutBoth, KeyState::kDown),
        whiteKey("nkd3.png", KeyShape::kCutLeft, KeyState::kDown),
        blackKey("nkd4.png", KeyState::kDown),
    };
    return table;
}

ArtworkSurface paintArtwork(const Artwork& artwork, const PixelFont& font)
{
    assert(artwork.width > 0 && artwork.height > 0);
    ArtworkSurface surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, artwork.width, artwork.height));
    const ArtworkContext context(cairo_create(surface.get()));
    artwork.paint(context.get(), font);
    cairo_surface_flush(surface.get());
    return surface;
}

void writePng(cairo_surface_t* surface, const std::filesystem::path& file)
{
    const cairo_status_t status = cairo_surface_write_to_png(surface, file.c_str());
    if (status != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error("cannot write " + file.string() + ": " +
                                 cairo_status_to_string(status));
}

}  // namespace orvane
