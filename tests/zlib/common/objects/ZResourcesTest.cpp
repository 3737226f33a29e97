// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZResources.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>

namespace orvane
{

TEST(ZResourcesTest, FindsByTypeAndNameWithoutCaseAlsoWhatIsEmpty)
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
    for (const auto* name : {"", "empty", "empty.pn", "empty.pngs", "Main.xml ", "empty\xD0png"})
        EXPECT_FALSE(resources.Find("IMAGE", name)) << name;
    EXPECT_FALSE(resources.Find("XM", "Main.xml"));
}

}  // namespace orvane
