#include "zlib/common/ZXMLDocument.h"
#include "zlib/common/ZXMLElement.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

/// A child as the plain way of reading gives it: with a copy of its text, read by itself.
struct PlainChild
{
    ZXMLTag tag;
    std::string text;
};

/// The rules in their plain form: one scan a level, a counter for the depth.
std::vector<PlainChild> plainChildren(const std::string& text)
{
    std::vector<PlainChild> children;
    bool inside = false;
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::size_t end = i;
        ZXMLTag tag;
        if (text[i] == '<') {
            end = tag.Read(text, i);
            if (end == 0)
                break;
            depth += tag.GetKind();
            if (inside && depth == 0 && tag.Name() == children.back().tag.Name()) {
                inside = false;
            } else if (!inside && tag.Name() == "?xml") {
                depth -= tag.GetKind();
            } else if (!inside && (tag.GetKind() > 0 || (tag.GetKind() == 0 && depth == 0))) {
                inside = tag.GetKind() > 0;
                children.push_back({tag, {}});
                i = end;
                continue;
            }
        }
        if (inside)
            children.back().text += text.substr(i, end + 1 - i);
        i = end;
    }
    return children;
}

void expectSameChildren(const ZXMLDocument& document, const std::string& text)
{
    const auto expected = plainChildren(text);
    ASSERT_EQ(document.GetChildCount(), static_cast<std::int32_t>(expected.size())) << text;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto child = document.GetChild(static_cast<std::int32_t>(i));
        ASSERT_EQ(child->GetName(), expected[i].tag.Name()) << text;
        ASSERT_EQ(child->GetAttributeCount(), expected[i].tag.AttributeCount()) << text;
        ASSERT_EQ(child->GetText(), expected[i].text) << text;
        expectSameChildren(*child, expected[i].text);
    }
}

void expectReadsPlainly(const std::string& text)
{
    const ZXMLDocument document(text.data(), static_cast<std::int32_t>(text.size()),
                                ZXMLDocument::Comments::kKept);
    ASSERT_NO_FATAL_FAILURE(expectSameChildren(document, text));
}

template <class Random>
std::size_t pick(Random& random, std::size_t count)
{
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

}  // namespace

TEST(ZXMLReferenceTest, SharedTextGivesTheChildrenOfThePlainReading)
{
    const std::vector<std::string> pieces{
        "<a>",     "</a>",     "<a />", "<b>",        "</b>", "<b />",
        "<a/>",    "<?xml ?>", "<",     "<!-- x -->", "text", "<a c=\"1\" d=2>",
        "</?xml>", ">",        "</a ",
    };
    std::mt19937 random(20);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        // Few unfinished tags: they end the text for all that follows.
        for (std::size_t i = pick(random, 24); i > 0; --i) {
            const std::string& piece = pieces[pick(random, pieces.size())];
            text += (piece == "<" || piece == "</a ") && pick(random, 4) ? "<a>" : piece;
        }
        ASSERT_NO_FATAL_FAILURE(expectReadsPlainly(text));
    }
}

TEST(ZXMLReferenceTest, MutatedTextsReadAsThePlainReadingSays)
{
    const std::string seed =
        "<?xml version=\"1.0\" standalone=\"yes\" ?>\n<!-- note -->\n<app title=\"x\">\n"
        "\t<element name=\"key\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=3>\n"
        "\t\t<label text=\"a/b\" type=\"full\" />\n\t</element>\n"
        "\t<buffer length=\"2\"><data values=\"3f8000007fc00001\"></data></buffer>\n</app>\n";
    const std::string odd("<>/=\" \0!-?\xFF", 11);
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        std::string text = seed;
        for (std::size_t i = 1 + pick(random, 8); i > 0 && text.size() > 1; --i) {
            const std::size_t position = pick(random, text.size());
            switch (pick(random, 4)) {
            case 0:
                text[position] = odd[pick(random, odd.size())];
                break;
            case 1:
                text.insert(position, 1, odd[pick(random, odd.size())]);
                break;
            case 2:
                text.erase(position, 1 + pick(random, 20));
                break;
            default:
                text.insert(position, text, pick(random, text.size()), pick(random, 40) + 1);
            }
        }
        ASSERT_NO_FATAL_FAILURE(expectReadsPlainly(text));
    }
}

}  // namespace orvane
