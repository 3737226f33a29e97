// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZString.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

namespace orvane
{

TEST(ZStringTest, CountsUtf16UnitsAndConvertsToUtf8AndBack)
{
    const std::string narrow = "C\xE2\x99\xAF \xF0\x9D\x84\x9E \xC3\xA9";  // C♯ 𝄞 é
    const ZString text(narrow);
    EXPECT_EQ(text.Length(), 7);  // the clef takes two units
    EXPECT_EQ(text.ToNarrow(), narrow);
}

TEST(ZStringTest, BytesThatAreNotUtf8BecomeTheReplacementCharacter)
{
    const std::pair<const char*, int> cases[] = {
        {"\xFF", 1},
        {"\xE2\x99", 2},      // cut short
        {"\xC0\xAF", 2},      // longer than needed
        {"\xED\xA0\x80", 3},  // a surrogate
    };
    for (const auto& [bytes, replaced] : cases)
        EXPECT_EQ(ZString(bytes), ZString(std::u16string(replaced, char16_t{0xFFFD}))) << bytes;
    EXPECT_EQ(ZString(std::u16string(1, char16_t{0xD834})).ToNarrow(), "\xEF\xBF\xBD");
}

TEST(ZStringTest, ToCStringNeitherOverrunsTheBufferNorCutsACharacter)
{
    std::array<char, 5> buffer{};
    ASSERT_TRUE(ZString("abc\xC3\xA9").ToCString(buffer));
    EXPECT_STREQ(buffer.data(), "abc");  // é would need the terminator's byte
    ASSERT_TRUE(ZString("abcdefgh").ToCString(buffer));
    EXPECT_STREQ(buffer.data(), "abcd");
    EXPECT_FALSE(ZString("a").ToCString({}));
}

TEST(ZStringTest, ToFloatSkipsBlanksAndIgnoresTheUnit)
{
    float value = 0.0f;
    EXPECT_TRUE(ZString("  -12.5 ms").ToFloat(value));
    EXPECT_EQ(value, -12.5f);
    EXPECT_TRUE(ZString("+3").ToFloat(value));
    for (const char* none : {"ms", "   "})
        EXPECT_FALSE(ZString(none).ToFloat(value)) << none;
    EXPECT_EQ(value, 3.0f);
}

}  // namespace orvane
