#include "zlib/common/ZXMLElement.h"

#include "zlib/common/ZString.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <limits>
#include <string>

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

TEST(ZXMLElementTest, TheFirstAttributeOfANameWinsButForStrings)
{
    ZXMLElement element("e");
    element.AddAttribute("a", "1");
    element.AddAttribute("a", "2");
    EXPECT_EQ(element.GetAttributeCount(), 2);
    EXPECT_STREQ(element.GetAttribute("a"), "1");
    EXPECT_EQ(element.GetAttributeString("a")->ToNarrow(), "2");
    EXPECT_EQ(element.GetAttributeValue(-1), nullptr);
    EXPECT_EQ(element.GetAttribute("A"), nullptr);
}

TEST(ZXMLElementTest, WholeNumbersReadAsFarAsTheyGo)
{
    EXPECT_EQ(withValue(" \t-12x").GetInt32("v"), -12);
    EXPECT_EQ(withValue("x").GetInt32("v"), 0);
    EXPECT_EQ(withValue("-").GetInt32("v"), 0);
    EXPECT_EQ(withValue("2147483647").GetInt64("v"), 2147483647);
    EXPECT_EQ(withValue("2147483648").GetInt64("v"), 2147483647);
    EXPECT_EQ(withValue("-99999999999999999999999").GetInt32("v"),
              std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(withValue("300").GetUInt8("v"), 44);
}

TEST(ZXMLElementTest, EveryFloatReadIsFinite)
{
    EXPECT_EQ(withValue("2.79397e-07").GetFloat("v"), 2.79397e-07f);
    EXPECT_EQ(withValue(" -1.5dB").GetFloat("v"), -1.5f);
    EXPECT_EQ(withValue(".5").GetFloat("v"), 0.5f);
    EXPECT_EQ(withValue("1,5").GetFloat("v"), 1.0f);
    EXPECT_EQ(withValue("0x10").GetFloat("v"), 0.0f);
    EXPECT_EQ(withValue("nan").GetFloat("v"), 0.0f);
    EXPECT_EQ(withValue("-inf").GetFloat("v"), 0.0f);
    EXPECT_EQ(withValue("1e39").GetFloat("v"), std::numeric_limits<float>::max());
    EXPECT_EQ(withValue("-1e999").GetDouble("v"), std::numeric_limits<double>::lowest());
}

TEST(ZXMLElementTest, NumbersAreWrittenInOneForm)
{
    ZXMLElement element("e");
    element.AddAttribute("int", std::int32_t{-5});
    element.AddAttribute("long", std::int64_t{-9223372036854775807 - 1});
    element.AddAttribute("float", 0.1f);
    element.AddAttribute("small", 2.79397e-07f);
    element.AddAttribute("large", 1234567.0f);
    element.AddAttribute("whole", 440.0f);
    element.AddAttribute("text", boost::make_shared<ZString>("h\xC3\xB6he"));
    element.AddAttribute("none", boost::shared_ptr<ZString>());
    EXPECT_EQ(element.Write(0), "<e int=\"-5\" long=\"-9223372036854775808\" float=\"0.1\" "
                                "small=\"2.79397e-07\" large=\"1.23457e+06\" whole=\"440\" "
                                "text=\"h\xC3\xB6he\" none=\"\">\n</e>\n");
}

TEST(ZXMLElementTest, TheHostsLocaleChangesNoNumber)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    setenv("LOCPATH", KESTRUNE_TEST_LOCALES, 1);
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    ZXMLElement element("e");
    element.AddAttribute("v", 0.5f);
    const std::string written = element.GetAttribute("v");
    const float value = element.GetFloat("v");
    const double hosts = std::strtod("0,5", nullptr);
    std::setlocale(LC_ALL, before.c_str());
    unsetenv("LOCPATH");
    EXPECT_EQ(hosts, 0.5) << "the locale was not in force";
    EXPECT_EQ(written, "0.5");
    EXPECT_EQ(value, 0.5f);
}

TEST(ZXMLElementTest, WhatIsWrittenReadsBack)
{
    ZXMLElement root("root");
    ZXMLElement child("child");
    child.AddAttribute("value", 1.5f);
    child.AppendText("text");
    root.AddChild(child, 1);
    root.AddChild(ZXMLElement("empty"), 0);
    EXPECT_EQ(root.GetText(), "\t<child value=\"1.5\">\ntext\t</child>\n<empty>\n</empty>\n");
    EXPECT_EQ(root.GetChild("child")->GetFloat("value"), 1.5f);
    EXPECT_EQ(root.GetChild("child")->GetText(), "\ntext\t");

    root.AddChild(root, 0);
    EXPECT_EQ(root.GetChild("root")->GetChildCount(), 2);
}

}  // namespace orvane
