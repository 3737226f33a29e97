#include "zlib/common/ZXMLDocument.h"

#include "zlib/common/ZXMLElement.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

ZXMLDocument parse(const std::string& text,
                   ZXMLDocument::Comments comments = ZXMLDocument::Comments::kBlanked)
{
    return {text.data(), static_cast<std::int32_t>(text.size()), comments};
}

/// Names of the direct children, joined by commas.
std::string childNames(const ZXMLDocument& document)
{
    std::string names;
    for (std::int32_t i = 0; i < document.GetChildCount(); ++i)
        names += document.GetChild(i)->GetName() + ",";
    return names;
}

std::string repeat(const std::string& text, std::size_t times)
{
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

/// Splits every element of the text, from the outside in, and counts them.
std::int64_t countElements(const ZXMLDocument& document)
{
    std::vector<boost::shared_ptr<ZXMLElement>> found;
    const auto visit = [&](const ZXMLDocument& parent) {
        for (std::int32_t i = 0; i < parent.GetChildCount(); ++i)
            found.push_back(parent.GetChild(i));
    };
    visit(document);
    for (std::size_t i = 0; i < found.size(); ++i)
        visit(*found[i]);
    return std::ssize(found);
}

}  // namespace

TEST(ZXMLDocumentTest, ChildrenAreFoundByPlaceAndByName)
{
    const ZXMLDocument document = parse("<b i=\"0\" /><a /><b /><c /><b i=\"3\" />");
    EXPECT_EQ(document.GetChildCount(), 5);
    EXPECT_EQ(document.GetChildCount("b"), 3);
    EXPECT_EQ(document.GetChild("b")->GetInt32("i"), 0);
    EXPECT_EQ(document.GetChild("b", 2)->GetInt32("i"), 3);
    EXPECT_EQ(document.GetChild("b", 3), nullptr);
    EXPECT_EQ(document.GetChild("none"), nullptr);
    EXPECT_EQ(document.GetChild(-1), nullptr);
}

TEST(ZXMLDocumentTest, BlanksCommentsThatHoldNoBracket)
{
    EXPECT_EQ(parse("a<!-- b --><c /><!---->").GetText(), "a          <c />       ");
    EXPECT_EQ(parse("<!-- a > b -->").GetText(), "<!-- a > b -->");
    EXPECT_EQ(parse("<!-->").GetText(), "     ");
    EXPECT_EQ(childNames(parse("<!-- a --><b />", ZXMLDocument::Comments::kKept)), "!--,b,");
}

TEST(ZXMLDocumentTest, SplitsAnewAfterAnAppend)
{
    ZXMLDocument document = parse("<a>1</a>");
    const auto first = document.GetChild("a");
    document.AppendText("<b />");
    document.AppendBytes("<c />no", 5);
    for (const char character : std::string("<d />"))
        document.AppendChar(character);
    EXPECT_EQ(childNames(document), "a,b,c,d,");
    EXPECT_EQ(first->GetText(), "1");

    first->AppendText("2");
    EXPECT_EQ(first->GetText(), "12");
    EXPECT_EQ(document.GetChild("a")->GetText(), "1");
}

TEST(ZXMLDocumentTest, RefusesOtherDeclarations)
{
    const std::string declaration = R"(<?xml version="1.0" standalone="yes" ?>)";
    const auto isValid = [](const std::string& text) {
        return HasValidDeclaration(text.data(), static_cast<std::int32_t>(text.size()));
    };
    EXPECT_TRUE(isValid(declaration + "\n"));
    EXPECT_FALSE(isValid(declaration));
    EXPECT_FALSE(isValid(" " + declaration + "\n"));
    EXPECT_FALSE(isValid(R"(<?xml version="1.0" encoding="UTF-8"?><app></app>)"));
    EXPECT_FALSE(HasValidDeclaration(nullptr, 100));
}

// Deep and wide texts: the characters that reading looks at must be in proportion to the text's,
// and neither splitting nor the end of the elements may need stack for each level.
TEST(ZXMLDocumentTest, ReadingIsLinearHoweverTagsAreNestedAndRepeated)
{
    const std::size_t times = 100000;
    const std::pair<std::string, std::size_t> cases[] = {
        {repeat("<a>", times) + repeat("</a>", times), times},
        {repeat("<a>", times), times},
        {repeat("<a><b>", times / 2) + repeat("</b></a>", times / 2), times},
        {repeat("<a></a>", times), times},
        {repeat("<a />", times), times},
        {repeat("</a>", times), 0},
        {repeat("<", times), 0},
        {"<a " + repeat("b=\"1\" ", times) + ">", 1},
    };
    for (const auto& [text, elements] : cases) {
        SCOPED_TRACE(text.substr(0, 20));
        const std::int64_t before = ZXMLTag::CharactersRead();
        EXPECT_EQ(countElements(parse(text)), static_cast<std::int64_t>(elements));
        // Each tag once to find it and once to take its attributes.
        EXPECT_LE(ZXMLTag::CharactersRead() - before, 2 * std::ssize(text));
    }
}

TEST(ZXMLDocumentTest, ElementsThatHoldOneAnotherAreReleasedLevelByLevel)
{
    // Walked down by the children's own pointers, each level keeps the next one.
    const ZXMLDocument document = parse(repeat("<a>", 100000));
    int level = 0;
    for (auto element = document.GetChild("a"); element; element = element->GetChild("a"))
        ++level;
    EXPECT_EQ(level, 100000);
}

}  // namespace orvane
