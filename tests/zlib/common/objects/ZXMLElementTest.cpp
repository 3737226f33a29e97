// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLElement.h"

#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

ZXMLElement withValue(const char* value)
{
    ZXMLElement element("e");
    element.AddAttribute("v", value);
    return element;
}

}  // namespace

TEST(ZXMLElementTest, TheFirstAttributeOfANameCountsExceptForStrings)
{
    ZXMLElement element = withValue("1");
    element.AddAttribute("v", "2");
    EXPECT_EQ(element.GetAttributeCount(), 2);
    EXPECT_STREQ(element.GetAttribute("v"), "1");
    EXPECT_EQ(element.GetAttributeString("v")->ToNarrow(), "2");
    EXPECT_EQ(element.GetAttributeValue(-1), nullptr);
    EXPECT_EQ(element.GetAttribute("V"), nullptr);
}

TEST(ZXMLElementTest, NumbersAreReadUpToTheFirstOtherCharacterAndClamped)
{
    const std::pair<const char*, std::int32_t> whole[] = {
        {" \t-12x", -12},
        {"x", 0},
        {"-", 0},
        {"2147483647", 2147483647},
        {"2147483648", 2147483647},
        {"-99999999999999999999999", -2147483647 - 1},
    };
    for (const auto& [text, number] : whole) {
        EXPECT_EQ(withValue(text).GetInt32("v"), number) << text;
        EXPECT_EQ(withValue(text).GetInt64("v"), number) << text;
    }
    EXPECT_EQ(withValue("300").GetUInt8("v"), 44);

    constexpr float kMax = std::numeric_limits<float>::max();
    const std::pair<const char*, float> floats[] = {
        {"2.79397e-07", 2.79397e-07f},
        {" -1.5dB", -1.5f},
        {".5", 0.5f},
        {"1,5", 1.0f},
        {"0x10", 0.0f},
        {"nan", 0.0f},
        {"-inf", 0.0f},
        {"1e39", kMax},
        {"-1e999", -kMax},
    };
    for (const auto& [text, number] : floats)
        EXPECT_EQ(withValue(text).GetFloat("v"), number) << text;
}

TEST(ZXMLElementTest, NumbersAreWrittenInOneFormWhateverTheHostsLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    setenv("LOCPATH", KESTRUNE_TEST_LOCALES, 1);
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    const double hosts = std::strtod("0,5", nullptr);
    ZXMLElement element("e");
    element.AddAttribute("int", std::int32_t{-5});
    element.AddAttribute("long", std::int64_t{-9223372036854775807 - 1});
    element.AddAttribute("float", 0.5f);
    element.AddAttribute("small", 2.79397e-07f);
    element.AddAttribute("large", 1234567.0f);
    element.AddAttribute("text", boost::make_shared<ZString>("h\xC3\xB6he"));
    element.AddAttribute("none", boost::shared_ptr<ZString>());
    const float read = element.GetFloat("float");
    std::setlocale(LC_ALL, before.c_str());
    unsetenv("LOCPATH");
    EXPECT_EQ(hosts, 0.5) << "the locale was not in force";
    EXPECT_EQ(read, 0.5f);
    EXPECT_EQ(element.Write(0), "<e int=\"-5\" long=\"-9223372036854775808\" float=\"0.5\" "
                                "small=\"2.79397e-07\" large=\"1.23457e+06\" "
                                "text=\"h\xC3\xB6he\" none=\"\">\n</e>\n");
}

TEST(ZXMLElementTest, AWrittenElementReadsBack)
{
    ZXMLElement root("root");
    ZXMLElement child = withValue("1.5");
    child.AppendText("text");
    root.AddChild(child, 1);
    root.AddChild(ZXMLElement("empty"), 0);
    EXPECT_EQ(root.GetText(), "\t<e v=\"1.5\">\ntext\t</e>\n<empty>\n</empty>\n");
    EXPECT_EQ(root.GetChild("e")->GetFloat("v"), 1.5f);
    EXPECT_EQ(root.GetChild("e")->GetText(), "\ntext\t");

    root.AddChild(root, 0);
    EXPECT_EQ(root.GetChild("root")->GetChildCount(), 2);
}

}  // namespace orvane
