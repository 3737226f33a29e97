// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/PixelFont.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace orvane
{

namespace
{

constexpr std::string_view kRemark = "--";
constexpr std::string_view kCodePrefix = "U+";

std::vector<std::string> splitAtBlanks(const std::string& line)
{
    std::istringstream words(line);
    return {std::istream_iterator<std::string>(words), {}};
}

char32_t codeOfName(const std::string& name)
{
    if (name.size() == 1)
        return static_cast<unsigned char>(name.front());
    if (!name.starts_with(kCodePrefix))
        throw std::runtime_error("pixel font: no glyph is called " + name);
    return static_cast<char32_t>(std::stoul(name.substr(kCodePrefix.size()), nullptr, 16));
}

bool isDrawingOfOneWidth(const PixelGlyph& glyph)
{
    return std::all_of(glyph.rows.begin(), glyph.rows.end(), [&](const std::string& row) {
        return row.size() == glyph.rows.front().size() &&
               row.find_first_not_of("#.") == std::string::npos;
    });
}

/// Reads the rows below a heading and appends its glyphs.
void readBlock(const std::string& heading, std::istream& text, std::vector<PixelGlyph>& glyphs)
{
    const std::size_t first = glyphs.size();
    for (const std::string& name : splitAtBlanks(heading))
        glyphs.push_back({codeOfName(name), {}});
    const std::size_t count = glyphs.size() - first;

    std::string line;
    for (int row = 0; row < PixelFont::kRows && std::getline(text, line); ++row) {
        const std::vector<std::string> cells = splitAtBlanks(line);
        if (cells.size() != count)
            throw std::runtime_error("pixel font: a row does not match the heading " + heading);
        for (std::size_t index = 0; index < count; ++index)
            glyphs[first + index].rows.push_back(cells[index]);
    }
    for (std::size_t index = first; index < glyphs.size(); ++index)
        if (glyphs[index].rows.size() != PixelFont::kRows || !isDrawingOfOneWidth(glyphs[index]))
            throw std::runtime_error("pixel font: broken drawings below the heading " + heading);
}

bool isBefore(const PixelGlyph& left, const PixelGlyph& right)
{
    return left.code < right.code;
}

}  // namespace

bool PixelGlyph::isInk(int column, int row) const
{
    if (column < 0 || column >= width() || row < 0 || row >= static_cast<int>(rows.size()))
        return false;
    return rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] == '#';
}

PixelFont PixelFont::parse(std::istream& text)
{
    PixelFont font;
    for (std::string line; std::getline(text, line);)
        if (!line.empty() && !line.starts_with(kRemark))
            readBlock(line, text, font.mGlyphs);
    std::sort(font.mGlyphs.begin(), font.mGlyphs.end(), isBefore);
    const auto same = [](const PixelGlyph& left, const PixelGlyph& right) {
        return left.code == right.code;
    };
    if (std::adjacent_find(font.mGlyphs.begin(), font.mGlyphs.end(), same) != font.mGlyphs.end())
        throw std::runtime_error("pixel font: a glyph is drawn twice");
    return font;
}

PixelFont PixelFont::read(const std::filesystem::path& file)
{
    std::ifstream text(file);
    if (!text)
        throw std::runtime_error("cannot read " + file.string());
    return parse(text);
}

const PixelGlyph& PixelFont::glyph(char32_t code) const
{
    const auto found =
        std::lower_bound(mGlyphs.begin(), mGlyphs.end(), PixelGlyph{code, {}}, isBefore);
    if (found == mGlyphs.end() || found->code != code)
        throw std::out_of_range("pixel font: no glyph for the code " + std::to_string(code));
    return *found;
}

int PixelFont::textWidth(std::string_view text) const
{
    int columns = text.empty() ? 0 : -kGapColumns;
    for (const char letter : text)
        columns += glyph(static_cast<unsigned char>(letter)).width() + kGapColumns;
    return columns;
}

}  // namespace orvane
