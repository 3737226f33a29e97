// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLTag.h"

#include "zlib/common/objects/ZTrace.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace orvane
{

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

}  // namespace

TEST(ZXMLTagTest, ReadsCompleteAttributesAndTracesWhatItSkips)
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

TEST(ZXMLTagTest, ReadsTheKindOfEachTag)
{
    const std::vector<std::pair<std::string, std::pair<std::string, int>>> cases{
        {"<a>", {"a", 1}},       {"</a>", {"a", -1}},
        {"<a />", {"a", 0}},     {"<a/>", {"a/", 1}},
        {"< a>", {"a", 1}},      {"<a b=\"1\"/>", {"a", 0}},
        {"<<a>", {"a", 1}},      {"</ a>", {"", -1}},
        {"<>", {"", 0}},         {"<!-- note -->", {"!--", 0}},
        {"<a\tb>", {"a\tb", 1}},
    };
    for (const auto& [text, expected] : cases) {
        ZXMLTag heading;
        EXPECT_NE(heading.ReadHeading(text, 0), 0u) << text;
        for (const ZXMLTag& tag : {heading, read(text)}) {
            EXPECT_EQ(tag.Name(), expected.first) << text;
            EXPECT_EQ(tag.GetKind(), expected.second) << text;
        }
    }
}

TEST(ZXMLTagTest, CutsLongNamesAndValues)
{
    const std::string name(5000, 'n');
    const std::string value(100000, 'v');
    const ZXMLTag tag = read("<" + name + " " + name + "=\"" + value + "\" last=\"1\">");
    EXPECT_EQ(tag.Name(), name.substr(0, 63));
    EXPECT_EQ(attributes(tag),
              (Attributes{{name.substr(0, 511), value.substr(0, 39999)}, {"last", "1"}}));
}

}  // namespace orvane
