// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/PixelFont.h"

#include "resources/KestruneResources.h"
#include "tools/resources/TrueTypeFile.h"
#include "zlib/common/objects/ZResources.h"

#include <cairo-ft.h>
#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

using namespace orvane;

namespace
{

template <auto release>
struct Releaser
{
    template <class T>
    void operator()(T* object) const
    {
        release(object);
    }
};

template <class T, auto release>
using Owned = std::unique_ptr<T, Releaser<release>>;

using Surface = Owned<cairo_surface_t, &cairo_surface_destroy>;
using Context = Owned<cairo_t, &cairo_destroy>;

const PixelFont& labelFont()
{
    static const PixelFont font = PixelFont::read(KESTRUNE_FONT_DRAWINGS);
    return font;
}

/// A surface of 8 x 8 pixels with the committed font at its size of 5 pixels.
Context fontContext(const Surface& surface)
{
    int faces = 0;
    const Owned<FcPattern, &FcPatternDestroy> pattern(
        FcFreeTypeQuery(reinterpret_cast<const FcChar8*>(KESTRUNE_FONT_FILE), 0, nullptr, &faces));
    const Owned<cairo_font_face_t, &cairo_font_face_destroy> face(
        cairo_ft_font_face_create_for_pattern(pattern.get()));
    Context context(cairo_create(surface.get()));
    cairo_set_font_face(context.get(), face.get());
    cairo_set_font_size(context.get(), 5.0);
    cairo_set_operator(context.get(), CAIRO_OPERATOR_SOURCE);
    return context;
}

/// The glyph as the font draws it: '#' for a covered pixel, '.' for a free one, '+' for others.
std::string rendered(const Surface& surface, cairo_t* context, char32_t code)
{
    FcChar8 utf8[FC_UTF8_MAX_LEN + 1] = {};
    FcUcs4ToUtf8(code, utf8);
    cairo_set_source_rgba(context, 0.0, 0.0, 0.0, 0.0);
    cairo_paint(context);
    cairo_set_source_rgba(context, 0.0, 0.0, 0.0, 1.0);
    cairo_move_to(context, 0.0, PixelFont::kRowsAboveBaseline);
    cairo_show_text(context, reinterpret_cast<const char*>(utf8));
    cairo_surface_flush(surface.get());
    std::string pixels;
    for (int i = 0; i < PixelFont::kRows * PixelFont::kRows; ++i) {
        const int coverage = cairo_image_surface_get_data(surface.get())[i];
        pixels += coverage == 255 ? '#' : coverage == 0 ? '.' : '+';
    }
    return pixels;
}

std::string drawn(const PixelGlyph& glyph)
{
    std::string pixels;
    for (int row = 0; row < PixelFont::kRows; ++row)
        for (int column = 0; column < PixelFont::kRows; ++column)
            pixels += glyph.isInk(column, row) ? '#' : '.';
    return pixels;
}

}  // namespace

TEST(TrueTypeFileTest, PackedFontIsWhatTheDrawingsGive)
{
    const auto packed = kestruneResources().Find("FONT", "Kolm 5pt.ttf");
    ASSERT_TRUE(packed);
    const std::vector<std::uint8_t> made = trueTypeFile(labelFont(), "Kolm 5pt");
    EXPECT_TRUE(std::ranges::equal(*packed, std::as_bytes(std::span(made))))
        << "scripts/make-artwork was not run after a change";
}

TEST(TrueTypeFileTest, EachPixelOfADrawingCoversOnePixelAtASizeOfFivePixels)
{
    const Surface surface(
        cairo_image_surface_create(CAIRO_FORMAT_A8, PixelFont::kRows, PixelFont::kRows));
    const Context context = fontContext(surface);
    for (const PixelGlyph& glyph : labelFont().glyphs())
        EXPECT_EQ(rendered(surface, context.get(), glyph.code), drawn(glyph))
            << static_cast<unsigned>(glyph.code);
}
