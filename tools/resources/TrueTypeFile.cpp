// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/resources/TrueTypeFile.h"

#include "tools/resources/BigEndianBytes.h"
#include "tools/resources/GlyphOutline.h"
#include "tools/resources/PixelFont.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <map>
#include <numeric>
#include <string_view>

namespace orvane
{

namespace
{

/// 64 units a pixel: rasterisers place points in 64ths of a pixel, so at 5 pixels every point falls
/// on such a place without any rounding.
constexpr int kUnitsPerPixel = 64;
constexpr int kUnitsPerEm = PixelFont::kCapitalRows * kUnitsPerPixel;
constexpr int kAscent = PixelFont::kRowsAboveBaseline * kUnitsPerPixel;
constexpr int kDescent = (PixelFont::kRows - PixelFont::kRowsAboveBaseline) * kUnitsPerPixel;

constexpr std::uint32_t kTrueTypeVersion = 0x00010000;
constexpr std::uint32_t kChecksumOfFile = 0xB1B0AFBA;
constexpr std::size_t kChecksumAdjustmentInHead = 8;
/// The date in the file, in seconds since 1904. It is fixed, so that the same glyphs give the same
/// file.
constexpr std::uint32_t kDate = 0xE0000000;

/// Glyph 0, the box that is shown for characters which the font lacks.
const PixelGlyph kMissingGlyph{0, {"....", "####", "#..#", "#..#", "#..#", "####", "....", "...."}};

struct UnitBox
{
    int left = 0;
    int bottom = 0;
    int right = 0;
    int top = 0;
};

/// A glyph ready for the tables, in font units.
struct FontGlyph
{
    char32_t code;
    int advance;
    std::vector<OutlineContour> contours;
    UnitBox box;

    [[nodiscard]] int countPoints() const
    {
        return std::accumulate(
            contours.begin(), contours.end(), 0,
            [](int sum, const auto& contour) { return sum + static_cast<int>(contour.size()); });
    }
};

UnitBox boxAround(const std::vector<OutlineContour>& contours)
{
    if (contours.empty())
        return {};
    const OutlinePoint first = contours.front().front();
    UnitBox box{first.x, first.y, first.x, first.y};
    for (const OutlineContour& contour : contours) {
        for (const OutlinePoint& point : contour) {
            box.left = std::min(box.left, point.x);
            box.right = std::max(box.right, point.x);
            box.bottom = std::min(box.bottom, point.y);
            box.top = std::max(box.top, point.y);
        }
    }
    return box;
}

FontGlyph fontGlyph(const PixelGlyph& drawing)
{
    std::vector<OutlineContour> contours = traceOutline(drawing);
    for (OutlineContour& contour : contours)
        for (OutlinePoint& point : contour)
            point = {point.x * kUnitsPerPixel, point.y * kUnitsPerPixel};
    const UnitBox box = boxAround(contours);
    const int advance = (drawing.width() + PixelFont::kGapColumns) * kUnitsPerPixel;
    return {drawing.code, advance, std::move(contours), box};
}

std::vector<FontGlyph> fontGlyphs(const PixelFont& font)
{
    std::vector<FontGlyph> glyphs{fontGlyph(kMissingGlyph)};
    for (const PixelGlyph& drawing : font.glyphs())
        glyphs.push_back(fontGlyph(drawing));
    return glyphs;
}

int widestAdvance(const std::vector<FontGlyph>& glyphs)
{
    int widest = 0;
    for (const FontGlyph& glyph : glyphs)
        widest = std::max(widest, glyph.advance);
    return widest;
}

UnitBox boxAroundAll(const std::vector<FontGlyph>& glyphs)
{
    UnitBox all;
    for (const FontGlyph& glyph : glyphs) {
        all.left = std::min(all.left, glyph.box.left);
        all.right = std::max(all.right, glyph.box.right);
        all.bottom = std::min(all.bottom, glyph.box.bottom);
        all.top = std::max(all.top, glyph.box.top);
    }
    return all;
}

/// Adds the fields for a binary search of a list of count items: searchRange (the largest power of
/// two not above count, times the item size), entrySelector (the exponent of that power) and
/// rangeShift (the size of the remaining items).
void addSearchFields(BigEndianBytes& bytes, int count, int itemSize)
{
    assert(count > 0);
    const int power = static_cast<int>(std::bit_floor(static_cast<unsigned>(count)));
    const int exponent = static_cast<int>(std::bit_width(static_cast<unsigned>(count))) - 1;
    bytes.add16({itemSize * power, exponent, itemSize * (count - power)});
}

BigEndianBytes headTable(const std::vector<FontGlyph>& glyphs)
{
    constexpr std::uint32_t kMagic = 0x5F0F3CF5;
    constexpr int kBaselineAtZeroAndBearingAtLeftEdge = 0x0003;
    constexpr int kWholePixelSizes = 0x0008;
    const UnitBox box = boxAroundAll(glyphs);
    BigEndianBytes table;
    table.add32(kTrueTypeVersion);
    table.add32(0x00010000);  // revision of the font
    table.add32(0);           // adjustment of the checksum, set once the file stands
    table.add32(kMagic);
    table.add16({kBaselineAtZeroAndBearingAtLeftEdge | kWholePixelSizes, kUnitsPerEm});
    for (int date = 0; date < 2; ++date) {  // made and changed, each 64 bits
        table.add32(0);
        table.add32(kDate);
    }
    table.add16({box.left, box.bottom, box.right, box.top});
    table.add16({0, PixelFont::kCapitalRows});  // plain style, smallest readable size
    table.add16({2, 1, 0});                     // left to right, long offsets in loca, glyf format
    return table;
}

BigEndianBytes hheaTable(const std::vector<FontGlyph>& glyphs)
{
    const UnitBox box = boxAroundAll(glyphs);
    BigEndianBytes table;
    table.add32(kTrueTypeVersion);
    table.add16({kAscent, -kDescent, 0, widestAdvance(glyphs)});
    // Least bearings to the left and to the right, and how far the widest outline reaches.
    table.add16({box.left, PixelFont::kGapColumns * kUnitsPerPixel, box.right});
    table.add16({1, 0, 0, 0, 0, 0, 0, 0});         // upright caret, reserved, metric format
    table.add16(static_cast<int>(glyphs.size()));  // every glyph has its own advance
    return table;
}

BigEndianBytes hmtxTable(const std::vector<FontGlyph>& glyphs)
{
    BigEndianBytes table;
    for (const FontGlyph& glyph : glyphs)
        table.add16({glyph.advance, glyph.box.left});
    return table;
}

BigEndianBytes maxpTable(const std::vector<FontGlyph>& glyphs)
{
    int points = 0;
    int contours = 0;
    for (const FontGlyph& glyph : glyphs) {
        points = std::max(points, glyph.countPoints());
        contours = std::max(contours, static_cast<int>(glyph.contours.size()));
    }
    BigEndianBytes table;
    table.add32(kTrueTypeVersion);
    table.add16({static_cast<int>(glyphs.size()), points, contours});
    table.add16({0, 0, 1});                 // no composite glyphs; one zone, for no instructions
    table.add16({0, 0, 0, 0, 0, 0, 0, 0});  // nothing that instructions or composites would need
    return table;
}

/// The outline of one glyph; nothing at all for one without ink.
BigEndianBytes outlineRecord(const FontGlyph& glyph)
{
    constexpr unsigned kOnCurve = 0x01;
    BigEndianBytes record;
    if (glyph.contours.empty())
        return record;
    record.add16(static_cast<int>(glyph.contours.size()));
    record.add16({glyph.box.left, glyph.box.bottom, glyph.box.right, glyph.box.top});
    int last = -1;
    for (const OutlineContour& contour : glyph.contours)
        record.add16(last += static_cast<int>(contour.size()));
    record.add16(0);  // no instructions
    for (int point = 0; point <= last; ++point)
        record.add8(kOnCurve);
    for (int OutlinePoint::*const axis : {&OutlinePoint::x, &OutlinePoint::y}) {
        int before = 0;
        for (const OutlineContour& contour : glyph.contours) {
            for (const OutlinePoint& point : contour) {
                record.add16(point.*axis - before);
                before = point.*axis;
            }
        }
    }
    record.align();
    return record;
}

/// A run of glyphs with consecutive codes and consecutive glyph numbers.
struct CodeRun
{
    int firstCode;
    int lastCode;
    int firstGlyph;
};

std::vector<CodeRun> codeRuns(const std::vector<FontGlyph>& glyphs)
{
    std::vector<CodeRun> runs;
    for (std::size_t index = 1; index < glyphs.size(); ++index) {
        const int code = static_cast<int>(glyphs[index].code);
        if (!runs.empty() && runs.back().lastCode + 1 == code)
            runs.back().lastCode = code;
        else
            runs.push_back({code, code, static_cast<int>(index)});
    }
    return runs;
}

/// Codes to glyphs, in format 4: the runs, and one at the end that maps the last code to glyph 0.
BigEndianBytes cmapTable(const std::vector<FontGlyph>& glyphs)
{
    std::vector<CodeRun> runs = codeRuns(glyphs);
    runs.push_back({0xFFFF, 0xFFFF, 0});
    const int count = static_cast<int>(runs.size());

    BigEndianBytes table;
    table.add16({0, 1, 3, 1});  // version, one subtable: Unicode, first plane
    table.add32(12);            // where it starts
    table.add16({4, 16 + 8 * count, 0});
    table.add16(2 * count);
    addSearchFields(table, count, 2);
    for (const CodeRun& run : runs)
        table.add16(run.lastCode);
    table.add16(0);
    for (const CodeRun& run : runs)
        table.add16(run.firstCode);
    for (const CodeRun& run : runs)
        table.add16(run.firstGlyph - run.firstCode);
    for (int run = 0; run < count; ++run)
        table.add16(0);
    return table;
}

/// The names in both usual encodings: Macintosh with one byte a letter, Windows with two.
BigEndianBytes nameTable(const std::string& family)
{
    std::string postScriptName = family;
    std::erase(postScriptName, ' ');
    const std::map<int, std::string> names{{0, "Drawn for Cantorel Mini."},
                                           {1, family},
                                           {2, "Regular"},
                                           {3, family + " 1.0"},
                                           {4, family},
                                           {5, "Version 1.0"},
                                           {6, postScriptName}};

    BigEndianBytes records;
    BigEndianBytes texts;
    for (const auto& [number, name] : names) {
        records.add16({1, 0, 0, number, static_cast<int>(name.size())});
        records.add16(static_cast<int>(texts.size()));
        texts.addText(name);
    }
    for (const auto& [number, name] : names) {
        records.add16({3, 1, 0x0409, number, 2 * static_cast<int>(name.size())});
        records.add16(static_cast<int>(texts.size()));
        for (const char letter : name)
            texts.add16(static_cast<unsigned char>(letter));
    }

    constexpr int kHeaderSize = 6;
    BigEndianBytes table;
    table.add16({0, 2 * static_cast<int>(names.size())});
    table.add16(kHeaderSize + static_cast<int>(records.size()));
    table.add(records.bytes());
    table.add(texts.bytes());
    return table;
}

BigEndianBytes postTable()
{
    BigEndianBytes table;
    table.add32(0x00030000);                         // glyphs have no names
    table.add32(0);                                  // upright
    table.add16({-kUnitsPerPixel, kUnitsPerPixel});  // underline: its top edge and its thickness
    for (int field = 0; field < 5; ++field)          // widths differ, memory is not told
        table.add32(0);
    return table;
}

BigEndianBytes os2Table(const std::vector<FontGlyph>& glyphs)
{
    constexpr int kRegular = 0x0040;
    constexpr int kUseTypographicMetrics = 0x0080;
    int sumOfAdvances = 0;
    for (const FontGlyph& glyph : glyphs)
        sumOfAdvances += glyph.advance;
    BigEndianBytes table;
    table.add16({4, sumOfAdvances / static_cast<int>(glyphs.size()), 400, 5, 0});
    for (int script = 0; script < 2;
         ++script)  // sizes and shifts of small raised and lowered signs
        table.add16({kUnitsPerEm / 2, kUnitsPerEm / 2, 0, kUnitsPerEm / 2});
    table.add16({kUnitsPerPixel, 2 * kUnitsPerPixel, 0});  // strike-out, family class
    for (int digit = 0; digit < 10; ++digit)               // panose: no classification
        table.add8(0);
    table.add32(0x00000003);  // Basic Latin and Latin-1
    for (int range = 0; range < 3; ++range)
        table.add32(0);
    table.addText("ORVN");
    table.add16({kRegular | kUseTypographicMetrics, static_cast<int>(glyphs[1].code),
                 static_cast<int>(glyphs.back().code)});
    table.add16({kAscent, -kDescent, 0, kAscent, kDescent});
    table.add32(0x00000001);  // code page 1252
    table.add32(0);
    table.add16({PixelFont::kSmallRows * kUnitsPerPixel, PixelFont::kCapitalRows * kUnitsPerPixel});
    table.add16({0, ' ', 1});  // default character, break character, longest context
    return table;
}

std::uint32_t checksum(std::span<const std::uint8_t> bytes)
{
    std::uint32_t sum = 0;
    for (std::size_t index = 0; index < bytes.size(); ++index)
        sum += static_cast<std::uint32_t>(bytes[index]) << (24 - 8 * (index % 4));
    return sum;
}

/// Tables by tag; in a file they stand in the order of their tags.
using FontTables = std::map<std::string, BigEndianBytes>;

void addOutlines(const std::vector<FontGlyph>& glyphs, FontTables& tables)
{
    BigEndianBytes& outlines = tables["glyf"];
    BigEndianBytes& places = tables["loca"];
    for (const FontGlyph& glyph : glyphs) {
        places.add32(static_cast<std::uint32_t>(outlines.size()));
        outlines.add(outlineRecord(glyph).bytes());
    }
    places.add32(static_cast<std::uint32_t>(outlines.size()));
}

/// Header, directory and tables. offsetOfHead is set to where the table "head" starts.
BigEndianBytes joinTables(FontTables& tables, std::size_t& offsetOfHead)
{
    constexpr int kHeaderSize = 12;
    constexpr int kEntrySize = 16;
    const int count = static_cast<int>(tables.size());
    BigEndianBytes file;
    file.add32(kTrueTypeVersion);
    file.add16(count);
    addSearchFields(file, count, kEntrySize);

    std::size_t offset = kHeaderSize + kEntrySize * tables.size();
    for (auto& [tag, table] : tables) {
        if (tag == "head")
            offsetOfHead = offset;
        file.addText(tag);
        file.add32(checksum(table.bytes()));
        file.add32(static_cast<std::uint32_t>(offset));
        file.add32(static_cast<std::uint32_t>(table.size()));
        table.align();
        offset += table.size();
    }
    for (const auto& [tag, table] : tables)
        file.add(table.bytes());
    return file;
}

}  // namespace

std::vector<std::uint8_t> trueTypeFile(const PixelFont& font, const std::string& family)
{
    const std::vector<FontGlyph> glyphs = fontGlyphs(font);
    FontTables tables;
    tables["OS/2"] = os2Table(glyphs);
    tables["cmap"] = cmapTable(glyphs);
    tables["head"] = headTable(glyphs);
    tables["hhea"] = hheaTable(glyphs);
    tables["hmtx"] = hmtxTable(glyphs);
    tables["maxp"] = maxpTable(glyphs);
    tables["name"] = nameTable(family);
    tables["post"] = postTable();
    addOutlines(glyphs, tables);

    assert(!font.glyphs().empty());
    std::size_t offsetOfHead = 0;
    std::vector<std::uint8_t> file = joinTables(tables, offsetOfHead).bytes();
    BigEndianBytes adjustment;
    adjustment.add32(kChecksumOfFile - checksum(file));
    std::copy(adjustment.bytes().begin(), adjustment.bytes().end(),
              file.begin() + static_cast<std::ptrdiff_t>(offsetOfHead + kChecksumAdjustmentInHead));
    return file;
}

}  // namespace orvane
