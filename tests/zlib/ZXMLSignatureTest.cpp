#include "zlib/common/ZXMLSignature.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace orvane
{

namespace
{

/// What the build's signing command made of description.xml.
std::string signedDescription()
{
    std::ifstream file(KESTRUNE_SIGNED_DESCRIPTION, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool verifies(const std::string& text)
{
    return VerifySignature(text.data(), static_cast<std::int32_t>(text.size()));
}

}  // namespace

TEST(ZXMLSignatureTest, NoByteUpToTheLastDigitCanBeAltered)
{
    const std::string text = signedDescription();
    const std::size_t tag = text.find("<signature");
    const std::size_t digits = text.find('"', tag) + 1;
    for (std::size_t i = 0; i < digits + 512; ++i) {
        // The attribute's name is not read, only its length counts. Line ends are not covered.
        if ((i > tag + 9 && i < digits) || text[i] == '\n')
            continue;
        std::string altered = text;
        altered[i] = static_cast<char>(altered[i] ^ 1);
        EXPECT_FALSE(verifies(altered)) << i;
    }
}

TEST(ZXMLSignatureTest, SurvivesOtherLineEnds)
{
    std::string text;
    for (const char character : signedDescription())
        text += character == '\n' ? "\r\n" : std::string(1, character);
    EXPECT_TRUE(verifies(text));
    std::erase_if(text, [](char character) { return character == '\r' || character == '\n'; });
    EXPECT_TRUE(verifies(text));
    EXPECT_TRUE(verifies(text + "<anything></anything>"));
}

TEST(ZXMLSignatureTest, ATextWithoutAWholeSignatureFails)
{
    const std::string text = signedDescription();
    const std::size_t end = text.find('"', text.find("<signature")) + 1 + 512;
    EXPECT_TRUE(verifies(text.substr(0, end)));
    for (std::size_t length = 0; length < end; ++length)
        EXPECT_FALSE(verifies(text.substr(0, length))) << length;
    EXPECT_FALSE(VerifySignature(nullptr, 100));
}

}  // namespace orvane
