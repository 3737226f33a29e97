// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLElement.h"

#include "support/Test.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/common/objects/ZTrace.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <clocale>

using namespace orvane;

namespace
{

using Attributes = std::vector<std::pair<std::string, std::string>>;

ZXMLTag read(const std::string& text)
{
    ZXMLTag tag;
    EXPECT_EQ(tag.Read(text, 0), text.find('>')) << text;
    return tag;
}

Attributes attributes(const ZXMLTag& tag)
{
    Attributes found;
    for (std::int32_t i = 0; i < tag.AttributeCount(); ++i)
        found.emplace_back(tag.AttributeName(i), tag.AttributeValue(i));
    return found;
}

std::vector<std::string> traced;

ZXMLElement withValue(const char* value)
{
    ZXMLElement element("e");
    element.AddAttribute("v", value);
    return element;
}

}  // namespace

TEST(ZXMLElementTest, ReadsNumbersUpToTheFirstOtherCharacter)
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

TEST(ZXMLElementTest, WritesNumbersAlikeInEveryLocale)
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
    element.AddAttribute("text", boost::make_shared<ZString>("h\xC3\xB6he"));
    element.AddAttribute("none", boost::shared_ptr<ZString>());
    const float read = element.GetFloat("float");
    std::setlocale(LC_ALL, before.c_str());
    unsetenv("LOCPATH");
    EXPECT_EQ(hosts, 0.5) << "the locale was not in force";
    EXPECT_EQ(read, 0.5f);
    EXPECT_EQ(element.Write(0), "<e int=\"-5\" long=\"-9223372036854775808\" float=\"0.5\" "
                                "small=\"2.79397e-07\" "
                                "text=\"h\xC3\xB6he\" none=\"\">\n</e>\n");
}

TEST(ZXMLTagTest, ReadsAttributesAndTracesWhatItSkips)
{
    using namespace std::string_literals;
    const std::vector<std::pair<std::string, Attributes>> cases{
        {R"(<a b="1" c=2.5 d="x/y">)", {{"b", "1"}, {"c", "2.5"}, {"d", "x/y"}}},
        {R"(<a x="0" b="1 > 2">)", {{"x", "0"}}},  // the first bracket ends it, even in quotes
        {"<a b=1 c=2>", {{"b", "1"}}},             // as it ends a bare value
        {"<a b=-1 >", {{"b", "1"}}},
        {R"(<?xml version="1.0" ?>)", {{"version", "1.0"}}},
        {"<a\0b c\0=\"1\0\0002\" d=\"3\">"s, {{"c", "12"}, {"d", "3"}}},  // NUL is left out
        {R"(<a b c="1" d=/x">)", {{"b", "1"}, {"d", "x"}}},
    };
    traced.clear();
    const auto before = ZTrace::SetSink([](std::string_view line) { traced.emplace_back(line); });
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(attributes(read(text)), expected) << text;
    ZTrace::SetSink(before);
    EXPECT_EQ(traced, (std::vector<std::string>{"ERROR: assignment expected in xml (c found)\n",
                                                "ERROR: Value expected, tag termination found\n"}));
}

TEST(ZXMLTagTest, ReadsTheKindOfEachTagAndCutsLongNamesAndValues)
{
    const std::vector<std::pair<std::string, std::pair<std::string, int>>> cases{
        {"<a>", {"a", 1}},   {"</a>", {"a", -1}},
        {"<a />", {"a", 0}}, {"<a/>", {"a/", 1}},
        {"< a>", {"a", 1}},  {"<a b=\"1\"/>", {"a", 0}},
        {"<>", {"", 0}},     {"<!-- note -->", {"!--", 0}},
    };
    for (const auto& [text, expected] : cases) {
        ZXMLTag heading;
        EXPECT_NE(heading.ReadHeading(text, 0), 0u) << text;
        for (const ZXMLTag& tag : {heading, read(text)}) {
            EXPECT_EQ(tag.Name(), expected.first) << text;
            EXPECT_EQ(tag.GetKind(), expected.second) << text;
        }
    }
    const std::string name(5000, 'n');
    const std::string value(100000, 'v');
    const ZXMLTag tag = read("<" + name + " " + name + "=\"" + value + "\" last=\"1\">");
    EXPECT_EQ(tag.Name(), name.substr(0, 63));
    EXPECT_EQ(attributes(tag),
              (Attributes{{name.substr(0, 511), value.substr(0, 39999)}, {"last", "1"}}));
}
