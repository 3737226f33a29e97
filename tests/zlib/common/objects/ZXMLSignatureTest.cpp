// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLSignature.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace orvane
{

TEST(ZXMLSignatureTest, RefusesAnyAlteredOrMissingByte)
{
    // description.xml, signed by the build.
    std::ifstream file(KESTRUNE_SIGNED_DESCRIPTION, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    const auto verifies = [](const std::string& each) {
        return VerifySignature(each.data(), static_cast<std::int32_t>(each.size()));
    };
    const std::size_t tag = text.find("<signature");
    const std::size_t digits = text.find('"', tag) + 1;
    std::string windows;
    EXPECT_TRUE(verifies(text.substr(0, digits + 512)));
    for (std::size_t i = 0; i < digits + 512; ++i) {
        windows += text[i] == '\n' ? "\r\n" : std::string(1, text[i]);
        EXPECT_FALSE(verifies(text.substr(0, i))) << i;
        // Of the attribute's name only the length matters, and line ends are not covered.
        if ((i > tag + 9 && i < digits) || text[i] == '\n')
            continue;
        std::string altered = text;
        altered[i] = static_cast<char>(altered[i] ^ 1);
        EXPECT_FALSE(verifies(altered)) << i;
    }
    EXPECT_TRUE(verifies(windows)) << "with other line ends";
}

}  // namespace orvane
