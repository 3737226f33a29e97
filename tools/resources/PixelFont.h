// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

/// One glyph of a pixel font: a drawing of PixelFont::kRows rows, all as wide as its first.
struct PixelGlyph
{
    char32_t code;
    std::vector<std::string> rows;  // from the top; '#' is ink, '.' is paper

    [[nodiscard]] int width() const { return static_cast<int>(rows.front().size()); }
    /// Whether a pixel is ink; outside the drawing there is none.
    [[nodiscard]] bool isInk(int column, int row) const;
};

/// A font drawn in pixels, read from a text in which each glyph can be seen.
class PixelFont
{
public:
    static constexpr int kRows = 8;
    static constexpr int kRowsAboveBaseline = 6;
    static constexpr int kGapColumns = 1;  // between two glyphs
    static constexpr int kCapitalRows = 5;
    static constexpr int kSmallRows = 4;

    /// Reads the drawings. Throws std::runtime_error, naming the block, when a block's rows do not
    /// match its heading or a code comes twice.
    static PixelFont parse(std::istream& text);
    /// The same from a file; throws std::runtime_error when it cannot be read.
    static PixelFont read(const std::filesystem::path& file);

    /// In rising order of their codes.
    [[nodiscard]] const std::vector<PixelGlyph>& glyphs() const { return mGlyphs; }
    /// Throws std::out_of_range when the font has no such glyph.
    [[nodiscard]] const PixelGlyph& glyph(char32_t code) const;
    /// Columns of an ASCII text, without the gap behind its last glyph.
    [[nodiscard]] int textWidth(std::string_view text) const;

private:
    std::vector<PixelGlyph> mGlyphs;
};

}  // namespace orvane
