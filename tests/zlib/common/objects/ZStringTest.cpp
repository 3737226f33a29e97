// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZString.h"

#include "support/PrivateFolder.h"
#include "support/Test.h"
#include "zlib/common/objects/ZResources.h"
#include "zlib/common/objects/ZStringTable.h"

using namespace orvane;

namespace
{

std::optional<ZString> find(std::string_view lines, std::int32_t id)
{
    const ZString before("as it was");
    ZString text = before;
    if (ZStringTable(lines).Find(id, text))
        return text;
    EXPECT_EQ(text, before);
    return std::nullopt;
}

}  // namespace

TEST(ZStringTableTest, FindsTheTextOfANumberCutAtAWholeCharacter)
{
    constexpr std::string_view kLines = "# remark\n"
                                        "7\n7 \n 8 eight\n9nine\n5000000000 five\n\n"
                                        "7 seven\r\n"
                                        "70\t# seventy  70 \n"
                                        "-1 Gr\xC3\xB6\xC3\x9F"
                                        "e\n"
                                        "7 second\n"
                                        "2147483647 last";
    EXPECT_EQ(find(kLines, 7), ZString("seven"));
    EXPECT_EQ(find(kLines, 70), ZString("# seventy  70 "));
    EXPECT_EQ(find(kLines, -1), ZString(std::u16string(u"Gr\u00F6\u00DFe")));
    EXPECT_EQ(find(kLines, 2147483647), ZString("last"));
    for (const std::int32_t id : {0, 8, 9, 71, 705032704})
        EXPECT_FALSE(find(kLines, id)) << id;
    EXPECT_FALSE(find("", 1));
    const std::string clef = "\xF0\x9D\x84\x9E";  // two units
    EXPECT_EQ(find("1 " + std::string(2000, 'x'), 1)->Length(), 1023);
    EXPECT_EQ(find("1 " + std::string(1022, 'x') + clef, 1), ZString(std::string(1022, 'x')));
}

TEST(ZResourcesTest, FindsByTypeAndNameInAnyCase)
{
    constexpr std::string_view kBytes = "onetwo!";
    const std::array<ZResources::Entry, 3> entries{{
        {"XML", "Main.xml", kBytes.data(), kBytes.data() + 3},
        {"IMAGE", "main.XML", kBytes.data() + 3, kBytes.data() + 7},
        {"IMAGE", "empty.png", kBytes.data(), kBytes.data()},
    }};
    const ZResources resources(entries);
    EXPECT_EQ(resources.FindText("xml", "mAIN.XML"), "one");
    EXPECT_EQ(resources.Find("Image", "MAIN.xml")->size(), 4u);
    EXPECT_TRUE(resources.Find("IMAGE", "empty.png")->empty());
    for (const auto* name : {"", "empty.pn", "empty.pngs"})
        EXPECT_FALSE(resources.Find("IMAGE", name)) << name;
    EXPECT_FALSE(resources.Find("XM", "Main.xml"));
}

TEST(ZResourcesTest, TextsComeInTheNearestLanguageOfTheUser)
{
    constexpr std::string_view kAustrian = "1 Servus\n";
    constexpr std::string_view kGerman = "1 Hallo\n2 Tag\n";
    constexpr std::string_view kDefault = "1 Hello\n2 Day\n3 Key\n";
    const std::array<ZResources::Entry, 3> entries{{
        {"STRING", "strings.txt", kDefault.data(), kDefault.data() + kDefault.size()},
        {"STRING", "strings.de.txt", kGerman.data(), kGerman.data() + kGerman.size()},
        {"STRING", "strings.de_AT.txt", kAustrian.data(), kAustrian.data() + kAustrian.size()},
    }};
    const auto texts = [resources = ZResources(entries)] {
        std::string joined;
        for (const std::int32_t id : {1, 2, 3}) {
            ZString text;
            EXPECT_TRUE(findResourceString(resources, id, text));
            joined += text.ToNarrow() + " ";
        }
        return joined;
    };
    const EnvironmentVariable language("LANG", "de_AT.UTF-8");
    const EnvironmentVariable unset("LC_MESSAGES", nullptr);
    const std::pair<const char*, const char*> cases[] = {{"", "Servus Tag Key "},
                                                         {"de_CH@euro", "Hallo Tag Key "},
                                                         {"de", "Hallo Tag Key "},
                                                         {"C", "Hello Day Key "},
                                                         {"_", "Hello Day Key "}};
    for (const auto& [locale, expected] : cases) {
        const EnvironmentVariable all("LC_ALL", locale);
        EXPECT_EQ(texts(), expected) << locale;
    }
}

TEST(ZStringTest, ConvertsToUtf8AndBackWithAReplacementForWhatIsInvalid)
{
    const std::string narrow = "C\xE2\x99\xAF \xF0\x9D\x84\x9E \xC3\xA9";  // C♯ 𝄞 é
    const ZString text(narrow);
    EXPECT_EQ(text.Length(), 7);  // the clef takes two units
    EXPECT_EQ(text.ToNarrow(), narrow);
    const std::pair<const char*, std::size_t> cases[] = {
        {"\xFF", 1},
        {"\xE2\x99", 2},      // cut short
        {"\xC0\xAF", 2},      // longer than needed
        {"\xED\xA0\x80", 3},  // a surrogate
    };
    for (const auto& [bytes, replaced] : cases)
        EXPECT_EQ(ZString(bytes), ZString(std::u16string(replaced, char16_t{0xFFFD}))) << bytes;
    EXPECT_EQ(ZString(std::u16string(1, char16_t{0xD834})).ToNarrow(), "\xEF\xBF\xBD");
}

TEST(ZStringTest, ToCStringCutsAtAWholeCharacter)
{
    std::array<char, 5> buffer{};
    ASSERT_TRUE(ZString("abc\xC3\xA9").ToCString(buffer));
    EXPECT_STREQ(buffer.data(), "abc");  // é would need the terminator's byte
    ASSERT_TRUE(ZString("abcdefgh").ToCString(buffer));
    EXPECT_STREQ(buffer.data(), "abcd");
    EXPECT_FALSE(ZString("a").ToCString({}));
    std::array<unsigned char, 5> counted{};
    ASSERT_TRUE(ZString("abc\xC3\xA9").ToPString(counted));
    EXPECT_EQ(counted, (std::array<unsigned char, 5>{3, 'a', 'b', 'c'}));
}

TEST(ZStringTest, ToFloatReadsANumberAtTheStartWithAPointInEveryLocale)
{
    for (const auto& [text, number] :
         {std::pair{" +1.5dB", 1.5f}, {"-2e3", -2000.0f}, {"1,5", 1.0f}, {"x", 7.0f}, {"", 7.0f}})
    {
        float value = 7.0f;
        EXPECT_EQ(ZString(text).ToFloat(value), number != 7.0f);
        EXPECT_EQ(value, number) << text;
    }
}
