#include "zlib/common/ZString.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace orvane
{

TEST(ZStringTest, CountsUtf16UnitsAndSurvivesTheWayThroughUtf8)
{
    const std::string narrow = "C\xE2\x99\xAF \xF0\x9D\x84\x9E \xC3\xA9";  // C♯ 𝄞 é
    const ZString text(narrow);
    EXPECT_EQ(text.Length(), 7);  // the clef takes two units
    EXPECT_EQ(text.ToNarrow(), narrow);
}

TEST(ZStringTest, BytesThatAreNotUtf8BecomeTheReplacementCharacter)
{
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ(ZString("\xFF").ToNarrow(), replaced);
    EXPECT_EQ(ZString("\xE2\x99").ToNarrow(), replaced + replaced);  // cut short
    EXPECT_EQ(ZString("\xC0\xAF").ToNarrow(), replaced + replaced);  // longer than needed
    EXPECT_EQ(ZString("\xED\xA0\x80").ToNarrow(), replaced + replaced + replaced);  // a surrogate
    EXPECT_EQ(ZString(std::u16string(1, char16_t{0xD834})).ToNarrow(), replaced);
}

TEST(ZStringTest, ANarrowBufferIsNeverOverrunNorACharacterCut)
{
    std::array<char, 5> buffer{};
    ASSERT_TRUE(ZString("abc\xC3\xA9").ToCString(buffer));
    EXPECT_STREQ(buffer.data(), "abc");  // é would need the terminator's byte
    ASSERT_TRUE(ZString("abcdefgh").ToCString(buffer));
    EXPECT_STREQ(buffer.data(), "abcd");
    EXPECT_FALSE(ZString("a").ToCString({}));
}

TEST(ZStringTest, ReadsNumbersInOneFormWhateverTheLocale)
{
    float value = 7.0f;
    EXPECT_TRUE(ZString("  -12.5 ms").ToFloat(value));
    EXPECT_EQ(value, -12.5f);
    EXPECT_TRUE(ZString("+3").ToFloat(value));
    EXPECT_EQ(value, 3.0f);
    EXPECT_FALSE(ZString("ms").ToFloat(value));
    EXPECT_FALSE(ZString("   ").ToFloat(value));
    EXPECT_EQ(value, 3.0f);
}

}  // namespace orvane
