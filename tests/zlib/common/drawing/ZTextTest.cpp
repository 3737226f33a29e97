// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/PrivateFolder.h"
#include "support/Test.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/drawing/ZDrawingLibrary.h"
#include "zlib/common/drawing/ZFont.h"

#include <boost/make_shared.hpp>

#include <filesystem>

using namespace orvane;

namespace
{

constexpr const char* kInstalledFile =
    "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf";

/// A canvas with a font.
struct Page : Canvas
{
    explicit Page(const char* typeface = "Arial", std::int32_t height = 20)
        : Canvas(400, 120)
    {
        SetFont(boost::make_shared<ZFont>(typeface, height));
    }
};

ZRect inkOf(const ZString& text, const ZRect& rect, std::int32_t align, bool truncate = false)
{
    Page page;
    page.SetTruncate(truncate);
    page.DrawString(text, rect, align);
    return page.Ink();
}

void replaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at))
        text.replace(at, from.size(), to);
}

/// Letters with a zero before each: a name in a font file has 16 bits a letter.
std::string wide(const std::string& text)
{
    std::string result;
    for (const char letter : text)
        result += std::string(1, '\0') + letter;
    return result;
}

/// An installed font under a name that no system has.
std::string renamedFont()
{
    std::string font = readTextFile(kInstalledFile);
    replaceAll(font, wide("Liberation"), wide("Kestrunely"));
    replaceAll(font, "Liberation", "Kestrunely");
    return font;
}

}  // namespace

TEST(ZTextTest, InkLiesWithinWhatWasMeasuredAndHeightIsTheEmInPixels)
{
    for (const char* typeface : {"Arial", "DejaVu Sans", "No Such Typeface", ""}) {
        for (const std::int32_t height : {5, 11, 18, 40}) {
            Page page(typeface, height);
            const ZString text("PITCH MH");
            page.DrawString(text, {10, 5, 400, 120}, 1);
            const ZRect box{10, 5, 10 + page.StringWidth(text), 5 + page.StringHeight(text)};
            EXPECT_FALSE(page.Ink().IsEmpty());
            EXPECT_EQ(page.Ink().Union(box), box) << typeface << ' ' << height;
            EXPECT_LE(box.GetWidth() - page.Ink().GetWidth(), height) << "measured too wide";
            EXPECT_EQ(page.StringBounds(text, {10, 5, 400, 120}), box);
        }
    }
    Page page("Arial", 100);
    // Of the typeface: a capital H is 1409 of 2048 units high, the M 1706 wide.
    page.DrawString("H", {0, 0, 400, 120}, 1);
    EXPECT_NEAR(page.Ink().GetHeight(), 68.8, 1.5);
    EXPECT_NEAR(page.StringWidth("M"), 83.3, 1.5);
}

TEST(ZTextTest, AlignsLeftCentreAndRight)
{
    const ZRect rect{100, 10, 300, 60};
    const ZRect left = inkOf("MMM", rect, 1);
    const ZRect centre = inkOf("MMM", rect, 0);
    const ZRect right = inkOf("MMM", rect, 2);
    EXPECT_NEAR(left.left, 100, 3);
    EXPECT_NEAR(centre.left + centre.right, 400, 3);
    EXPECT_NEAR(right.right, 300, 3);
    EXPECT_EQ(left.top, right.top) << "always from the top";
    EXPECT_EQ(inkOf("MMM", rect, 3), left);
}

TEST(ZTextTest, WrapsAtWordsOrEndsInAnEllipsisAndIsCutBelowItsRectangle)
{
    Page page;
    const std::int32_t lineHeight = page.StringHeight("X");
    const ZRect rect{10, 10, 10 + page.StringWidth("TUNING"), 80};
    EXPECT_EQ(page.StringBounds("TUNING METER", rect).GetHeight(), 2 * lineHeight);
    EXPECT_EQ(page.StringBounds("A B", rect).GetHeight(), lineHeight);
    EXPECT_LE(inkOf("TUNING METER", rect, 1).right, rect.right + 1);
    EXPECT_GT(inkOf("TUNING METER", rect, 1).GetHeight(), lineHeight);

    page.SetTruncate(true);
    EXPECT_EQ(page.StringBounds("TUNING METER", rect).GetHeight(), lineHeight);
    EXPECT_LE(inkOf("TUNING METER", rect, 1, true).right, rect.right + 1);
    EXPECT_LE(inkOf("TUNING METER", rect, 1, true).GetHeight(), lineHeight);
    EXPECT_EQ(inkOf("TUNING", rect, 1, true), inkOf("TUNING", rect, 1, false)) << "it fits";
    EXPECT_LE(inkOf("WIDE TEXT", {20, 10, 24, 30}, 1, true).right, 25);
    const ZRect whole = inkOf("TUNING METER", {10, 10, 90, 100}, 1);
    ASSERT_GT(whole.bottom, 40) << "two lines";
    for (const bool truncate : {false, true})
        for (const std::int32_t bottom : {15, 18}) {
            const ZRect cut = inkOf("TUNING METER", {10, 10, 90, bottom}, 1, truncate);
            EXPECT_EQ(cut.top, whole.top);
            EXPECT_EQ(cut.bottom, bottom + 1) << "a layout is a pixel taller than its rectangle";
        }
    EXPECT_EQ(inkOf("TUNING METER", {10, 10, 90, 70}, 1), whole);
}

TEST(ZPrivateFontTest, ServesLikeAnInstalledFontUntilTheLibraryEnds)
{
    const PrivateFolder folder;
    writeTextFile(folder.Path("private.ttf"), renamedFont());
    writeTextFile(folder.Path("cut.ttf"), renamedFont().substr(0, 2000));
    writeTextFile(folder.Path("text.ttf"), "no font");
    const ZString text("Kestrune 12");
    const auto draw = [&](const char* typeface) {
        Page page(typeface);
        page.DrawString(text, {0, 0, 400, 120}, 1);
        return page.Pixels();
    };
    const auto fallback = draw("No Such Typeface");
    const auto installed = draw("Liberation Sans");
    ASSERT_NE(installed, fallback);
    {
        const ZDrawingLibrary library;
        for (const char* const none : {"cut.ttf", "text.ttf", "missing.ttf"})
            AddPrivateFont(folder.Path(none));
        EXPECT_EQ(draw("Kestrunely Sans"), fallback);
        AddPrivateFont(folder.Path("private.ttf"));
        {
            const ZDrawingLibrary another;
            AddPrivateFont(folder.Path("private.ttf"));
        }
        EXPECT_EQ(draw("Kestrunely Sans"), installed);
        EXPECT_EQ(Page("Kestrunely Sans").StringWidth(text),
                  Page("Liberation Sans").StringWidth(text));
        EXPECT_EQ(draw("Liberation Sans"), installed);
    }
    EXPECT_EQ(draw("Kestrunely Sans"), fallback);
}

TEST(ZPrivateFontTest, FontInMemoryIsOneFile)
{
    const auto openFiles = [] {
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    const std::string font = renamedFont();
    const auto widthOf = [](const char* typeface) {
        return Page(typeface).StringWidth("Kestrune");
    };
    const auto before = openFiles();
    for (int i = 0; i < 3; ++i) {
        const ZDrawingLibrary library;
        AddPrivateFont(std::as_bytes(std::span(font)));
        AddPrivateFont(std::as_bytes(std::span("no font")));
        EXPECT_EQ(widthOf("Kestrunely Sans"), widthOf("Liberation Sans"));
        EXPECT_NE(widthOf("Kestrunely Sans"), widthOf("No Such Typeface"));
    }
    EXPECT_EQ(openFiles(), before + 2);
}

TEST(ZTextTest, ThreadsDrawWhileFontsComeAndGo)
{
    const auto work = [] {
        for (int i = 0; i < 20; ++i) {
            const ZDrawingLibrary library;
            AddPrivateFont("/nowhere/font.ttf");
            Page page;
            page.DrawString("text", {0, 0, 100, 100}, 1);
            EXPECT_GT(page.Coverage(), 0.0);
        }
    };
    std::thread other(work);
    work();
    other.join();
}
