// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/ProductApplication.h"
#include "support/Test.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZResources.h"
#include "zlib/common/objects/ZStringTable.h"
#include "zlib/common/objects/ZXMLElement.h"

using namespace orvane;

namespace
{

std::string_view descriptionText()
{
    return kestruneResources().FindText("XML", "kestrune_vst.xml").value();
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

// The reader is tolerant: it would take such a tag for something else and say nothing.
TEST(DescriptionTest, HoldsOnlyTagsThatTheReaderReadsAsWritten)
{
    const std::string_view text = descriptionText();
    std::vector<std::string_view> open;
    for (std::size_t i = text.find('<'); i != text.npos; i = text.find('<', i + 1)) {
        const std::string_view tag = text.substr(i + 1, text.find('>', i) - i - 1);
        SCOPED_TRACE(tag);
        EXPECT_EQ(tag.find_first_of("\t\r\n"), tag.npos);
        EXPECT_EQ(std::ranges::count(tag, '"') % 2, 0);
        if (tag.starts_with('/')) {
            ASSERT_FALSE(open.empty());
            ASSERT_EQ(open.back(), tag.substr(1));
            open.pop_back();
        } else if (tag.ends_with('/')) {
            EXPECT_TRUE(tag.ends_with(" /"));
        } else if (!tag.starts_with('?') && !tag.starts_with('!')) {
            open.push_back(tag.substr(0, tag.find(' ')));
        }
    }
    EXPECT_TRUE(open.empty());
}

TEST(DescriptionTest, NamesOnlyRegisteredClassesAndExistingElements)
{
    const ZInterfaceLock lock;
    const auto product = startProduct();
    const auto document = product->GetCurrentDocument();
    // These three are registered although the window has no such view.
    std::vector<std::string> classes{"KestruneCentsSliderClass", "KestruneKeyboardLabelClass",
                                     "KestrunePitchGraphClass"};
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

TEST(DescriptionTest, LabelsWithAKeyHaveTheTextOfTheStringTable)
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
