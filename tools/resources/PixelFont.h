// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

/// A glyph of a pixel font: PixelFont::kRows rows of equal width.
struct PixelGlyph
{
    char32_t code;
    std::vector<std::string> rows;  // from the top; '#' is ink, '.' is paper

    [[nodiscard]] int width() const { return static_cast<int>(rows.front().size()); }
    /// Whether a pixel is ink; false outside the drawing.
    [[nodiscard]] bool isInk(int column, int row) const;
};

/// A pixel font, read from a text file that shows each glyph as rows of characters.
class PixelFont
{
public:
    static constexpr int kRows = 8;
    static constexpr int kRowsAboveBaseline = 6;
    static constexpr int kGapColumns = 1;  // between two glyphs
    static constexpr int kCapitalRows = 5;
    static constexpr int kSmallRows = 4;

    /// Reads the glyphs. Throws std::runtime_error, naming the block, if a block's rows do not
    /// match its heading or a character is drawn twice.
    static PixelFont parse(std::istream& text);
    /// Reads the glyphs from a file. Throws std::runtime_error as parse() does, and if the file
    /// cannot be read.
    static PixelFont read(const std::filesystem::path& file);

    /// All glyphs in ascending order of their codes.
    [[nodiscard]] const std::vector<PixelGlyph>& glyphs() const { return mGlyphs; }
    /// The glyph of a character. Throws std::out_of_range if the font has none.
    [[nodiscard]] const PixelGlyph& glyph(char32_t code) const;
    /// The width of an ASCII text in columns, without the gap after its last glyph.
    [[nodiscard]] int textWidth(std::string_view text) const;

private:
    std::vector<PixelGlyph> mGlyphs;
};

}  // namespace orvane
