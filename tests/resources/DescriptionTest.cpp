// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/ProductApplication.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZResources.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/common/objects/ZStringTable.h"
#include "zlib/common/objects/ZXMLDocument.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

namespace
{

std::string_view descriptionText()
{
    return kestruneResources().FindText("XML", "kestrune_vst.xml").value();
}

/// What the reader would take for something else than what the writer of this tag meant; empty
/// when there is nothing. Open holds the names of the tags that are open.
std::string faultOf(std::string_view tag, std::vector<std::string>& open)
{
    const std::string name(tag.substr(0, tag.find(' ')));
    if (std::ranges::any_of(tag, [](char c) { return c == '\t' || c == '\r' || c == '\n'; }))
        return "white space that is no blank";
    if (std::ranges::count(tag, '"') % 2 != 0)
        return "a value that ends the tag";
    if (tag.ends_with('/'))
        return tag.ends_with(" /") ? "" : "an element that does not close itself";
    if (name.starts_with('?') || name.starts_with('!'))
        return "";
    if (!name.starts_with('/')) {
        open.push_back(name);
        return "";
    }
    if (open.empty() || open.back() != name.substr(1))
        return "a closing tag of another element";
    open.pop_back();
    return "";
}

void forEachElementOf(const ZXMLDocument& document,
                      const std::function<void(const ZXMLElement&)>& visit)
{
    for (std::int32_t i = 0; i < document.GetChildCount(); ++i) {
        const auto child = document.GetChild(i);
        visit(*child);
        forEachElementOf(*child, visit);
    }
}

void forEachElement(const std::function<void(const ZXMLElement&)>& visit)
{
    const std::string_view text = descriptionText();
    forEachElementOf({text.data(), static_cast<std::int32_t>(text.size())}, visit);
}

}  // namespace

TEST(DescriptionTest, EveryTagReadsAsItLooks)
{
    const std::string_view text = descriptionText();
    std::vector<std::string> open;
    for (std::size_t i = text.find('<'); i != text.npos; i = text.find('<', i)) {
        const std::size_t end = std::min(text.find('>', i), text.size());
        const std::string_view tag = text.substr(i + 1, end - i - 1);
        ASSERT_EQ(faultOf(tag, open), "") << tag;
        i = end;
    }
    EXPECT_TRUE(open.empty());
}

TEST(DescriptionTest, EveryViewIsOfAClassAndNamesElementsThatThereAre)
{
    const ZInterfaceLock lock;
    const auto product = startProduct();
    const auto document = product->GetCurrentDocument();
    // Views that another window may have come first.
    std::vector<std::string> classes{"KestruneCentsSliderClass", "KestruneKeyboardLabelClass",
                                     "KestrunePitchGraphClass", "ZBWKeysClass",
                                     "ZGraphAxisViewClass"};
    forEachElement([&](const ZXMLElement& element) {
        if (!element.IsNamed("view"))
            return;
        classes.emplace_back(element.GetAttribute("class"));
        for (std::int32_t i = 0; const auto named = element.GetChild("element", i); ++i)
            for (std::int32_t j = 0; j < named->GetAttributeCount(); ++j)
                EXPECT_NE(document->FindElement(named->GetAttributeValue(j)), nullptr)
                    << named->GetAttributeValue(j);
    });
    EXPECT_GT(classes.size(), 5u);
    for (const std::string& name : classes)
        EXPECT_EQ(product->GetClassRegistry()
                      .Create(name, boost::make_shared<ZXMLElement>("view"))
                      ->GetClassName(),
                  name);
}

TEST(DescriptionTest, LabelsByNumberReadAsTheStringTableHasThem)
{
    const ZStringTable strings(kestruneResources().FindText("STRING", "strings.txt").value());
    std::set<std::int32_t> keys;
    forEachElement([&](const ZXMLElement& element) {
        if (!element.HasAttribute("key") || !element.IsNamed("label"))
            return;
        const std::int32_t key = element.GetInt32("key");
        ZString label;
        EXPECT_TRUE(strings.Find(key, label)) << key;
        EXPECT_EQ(label, *element.GetAttributeString("text"));
        EXPECT_TRUE(keys.insert(key).second) << key;
    });
    EXPECT_EQ(keys.size(), 5u);
}

}  // namespace orvane
