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
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

using namespace orvane;

namespace
{

const PixelFont& labelFont()
{
    static const PixelFont font = PixelFont::read(KESTRUNE_FONT_DRAWINGS);
    return font;
}

PixelFont parsed(const std::string& text)
{
    std::istringstream stream(text);
    return PixelFont::parse(stream);
}

/// A block of drawings; rows that are not given are empty.
std::string block(const std::string& heading, const std::vector<const char*>& rows,
                  const char* emptyRow)
{
    std::string text = heading + "\n";
    for (const char* row : rows)
        text += std::string(row) + "\n";
    for (std::size_t row = rows.size(); row < PixelFont::kRows; ++row)
        text += std::string(emptyRow) + "\n";
    return text;
}

struct Freer
{
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_font_face_t* face) const { cairo_font_face_destroy(face); }
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};

template <class T>
using Owned = std::unique_ptr<T, Freer>;

Owned<FcPattern> committedFont()
{
    int faces = 0;
    return Owned<FcPattern>(
        FcFreeTypeQuery(reinterpret_cast<const FcChar8*>(KESTRUNE_FONT_FILE), 0, nullptr, &faces));
}

std::string utf8(char32_t code)
{
    FcChar8 bytes[FC_UTF8_MAX_LEN];
    const int count = FcUcs4ToUtf8(code, bytes);
    return {bytes, bytes + count};
}

/// A small canvas that the committed font writes on at 5 pixels; 8 x 8 pixels, a line high.
class FontCanvas
{
public:
    explicit FontCanvas(cairo_hint_style_t hinting)
        : mSurface(cairo_image_surface_create(CAIRO_FORMAT_A8, kSize, kSize))
        , mContext(cairo_create(mSurface.get()))
    {
        const Owned<cairo_font_face_t> face(
            cairo_ft_font_face_create_for_pattern(committedFont().get()));
        const Owned<cairo_font_options_t> options(cairo_font_options_create());
        cairo_font_options_set_hint_style(options.get(), hinting);
        cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
        cairo_set_font_options(mContext.get(), options.get());
        cairo_set_font_face(mContext.get(), face.get());
        cairo_set_font_size(mContext.get(), 5.0);
    }

    /// Writes a glyph alone; how much of each pixel it covers, 0 to 255.
    std::vector<unsigned char> write(char32_t code)
    {
        cairo_set_operator(mContext.get(), CAIRO_OPERATOR_CLEAR);
        cairo_paint(mContext.get());
        cairo_set_operator(mContext.get(), CAIRO_OPERATOR_OVER);
        cairo_move_to(mContext.get(), 0.0, PixelFont::kRowsAboveBaseline);
        cairo_show_text(mContext.get(), utf8(code).c_str());
        cairo_surface_flush(mSurface.get());
        const unsigned char* const data = cairo_image_surface_get_data(mSurface.get());
        return {data, data + kSize * kSize};
    }

    double advance(char32_t code)
    {
        cairo_text_extents_t extents;
        cairo_text_extents(mContext.get(), utf8(code).c_str(), &extents);
        return extents.x_advance;
    }

    cairo_font_extents_t lineExtents()
    {
        cairo_font_extents_t extents;
        cairo_font_extents(mContext.get(), &extents);
        return extents;
    }

private:
    static constexpr int kSize = PixelFont::kRows;

    Owned<cairo_surface_t> mSurface;
    Owned<cairo_t> mContext;
};

std::vector<unsigned char> drawnPixels(const PixelGlyph& glyph)
{
    std::vector<unsigned char> pixels;
    for (int row = 0; row < PixelFont::kRows; ++row)
        for (int column = 0; column < PixelFont::kRows; ++column)
            pixels.push_back(glyph.isInk(column, row) ? 255 : 0);
    return pixels;
}

}  // namespace

TEST(PixelFontTest, RefusesDrawingsThatDoNotFitTheirHeading)
{
    for (const std::string& text : {
             block("A B", {"##"}, ".."),         // a drawing is missing
             block("A", {"##"}, "."),            // rows of two widths
             block("A", {"x"}, "."),             // neither ink nor paper
             std::string("A\n#\n#\n"),           // rows are missing
             block("AB", {"#"}, "."),            // no name of a glyph
             block("A U+0041", {"# #"}, ". ."),  // drawn twice
         })
        EXPECT_THROW(parsed(text), std::runtime_error) << text;
    EXPECT_EQ(parsed(block("U+0041 #", {"## #"}, ".. .")).glyph('A').width(), 2);
}

TEST(TrueTypeFileTest, PackedFontIsWhatTheDrawingsGive)
{
    const auto packed = kestruneResources().Find("FONT", "Kolm 5pt.ttf");
    ASSERT_TRUE(packed);
    const std::vector<std::uint8_t> made = trueTypeFile(labelFont(), "Kolm 5pt");
    EXPECT_TRUE(std::ranges::equal(*packed, std::as_bytes(std::span(made))))
        << "scripts/make-artwork was not run after a change";
}

TEST(TrueTypeFileTest, AtFivePixelsEveryPixelOfADrawingIsOnePixelUnderAnyHinting)
{
    for (const cairo_hint_style_t hinting : {CAIRO_HINT_STYLE_DEFAULT, CAIRO_HINT_STYLE_NONE,
                                             CAIRO_HINT_STYLE_SLIGHT, CAIRO_HINT_STYLE_FULL})
    {
        FontCanvas canvas(hinting);
        EXPECT_NEAR(canvas.lineExtents().ascent, PixelFont::kRowsAboveBaseline, 1e-4);
        EXPECT_NEAR(canvas.lineExtents().height, PixelFont::kRows, 1e-4);
        for (const PixelGlyph& glyph : labelFont().glyphs()) {
            SCOPED_TRACE(static_cast<unsigned>(glyph.code));
            EXPECT_EQ(canvas.write(glyph.code), drawnPixels(glyph));
            EXPECT_NEAR(canvas.advance(glyph.code), glyph.width() + PixelFont::kGapColumns, 1e-4);
        }
    }
}
