// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZStringTable.h"

#include "zlib/common/objects/ZString.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace orvane
{

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

TEST(ZStringTableTest, GivesTheTextBehindTheNumberAndPassesOverLinesOfAnotherForm)
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
}

TEST(ZStringTableTest, CutsLongTextsAtAWholeCharacter)
{
    const std::string clef = "\xF0\x9D\x84\x9E";  // two units
    EXPECT_EQ(find("1 " + std::string(2000, 'x'), 1)->Length(), 1023);
    EXPECT_EQ(find("1 " + std::string(1022, 'x') + clef, 1), ZString(std::string(1022, 'x')));
}

}  // namespace orvane
