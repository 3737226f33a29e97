// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLSignature.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace orvane
{

namespace
{

bool verifies(const std::string& text)
{
    return VerifySignature(text.data(), static_cast<std::int32_t>(text.size()));
}

class ZXMLSignatureTest : public testing::Test
{
protected:
    ZXMLSignatureTest()
    {
        // description.xml, signed by the build.
        std::ifstream file(KESTRUNE_SIGNED_DESCRIPTION, std::ios::binary);
        text.assign(std::istreambuf_iterator<char>(file), {});
        tag = text.find("<signature");
        digits = text.find('"', tag) + 1;
    }

    std::string text;
    std::size_t tag = 0;
    std::size_t digits = 0;  // where the 512 begin
};

}  // namespace

TEST_F(ZXMLSignatureTest, NoByteUpToTheLastDigitCanBeAlteredOrMissing)
{
    EXPECT_TRUE(verifies(text.substr(0, digits + 512)));
    EXPECT_FALSE(VerifySignature(nullptr, 100));
    for (std::size_t i = 0; i < digits + 512; ++i) {
        EXPECT_FALSE(verifies(text.substr(0, i))) << i;
        // Of the attribute's name only the length matters, and line ends are not covered.
        if ((i > tag + 9 && i < digits) || text[i] == '\n')
            continue;
        std::string altered = text;
        altered[i] = static_cast<char>(altered[i] ^ 1);
        EXPECT_FALSE(verifies(altered)) << i;
    }
}

TEST_F(ZXMLSignatureTest, SurvivesOtherLineEnds)
{
    std::string windows;
    for (const char character : text)
        windows += character == '\n' ? "\r\n" : std::string(1, character);
    EXPECT_TRUE(verifies(windows));
    std::erase(text, '\n');
    EXPECT_TRUE(verifies(text + "<anything></anything>"));
}

}  // namespace orvane
