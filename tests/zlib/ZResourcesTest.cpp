#include "zlib/common/ZResources.h"

#include <gtest/gtest.h>

#include <array>

namespace orvane
{

namespace
{

constexpr std::string_view kBytes("one\0two", 7);
constexpr std::array<ZResources::Entry, 3> kEntries{{
    {"XML", "Main.xml", kBytes.data(), kBytes.data() + 3},
    {"IMAGE", "main.XML", kBytes.data() + 3, kBytes.data() + 7},
    {"IMAGE", "empty.png", kBytes.data(), kBytes.data()},
}};
constexpr ZResources kResources(kEntries);

}  // namespace

TEST(ZResourcesTest, FindsByTypeAndNameWithoutCaseAlsoWhatIsEmpty)
{
    EXPECT_EQ(kResources.FindText("XML", "Main.xml"), "one");
    EXPECT_EQ(kResources.FindText("xml", "mAIN.XML"), "one");
    const auto bytes = kResources.Find("Image", "MAIN.xml");
    ASSERT_TRUE(bytes);
    ASSERT_EQ(bytes->size(), 4u);

    ASSERT_TRUE(kResources.Find("IMAGE", "empty.png"));
    EXPECT_TRUE(kResources.Find("IMAGE", "empty.png")->empty());
    for (const auto* name : {"", "empty", "empty.pn", "empty.pngs", "Main.xml ", "empty\xD0png"})
        EXPECT_FALSE(kResources.Find("IMAGE", name)) << name;
    EXPECT_FALSE(kResources.Find("XML", "empty.png"));
    EXPECT_FALSE(kResources.Find("XM", "Main.xml"));
    EXPECT_FALSE(ZResources({}).Find("XML", "Main.xml"));
}

}  // namespace orvane
