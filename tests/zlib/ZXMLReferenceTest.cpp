#include "support/PlainXml.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

std::size_t pick(std::mt19937& random, std::size_t count)
{
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

void mutate(std::string& text, std::mt19937& random)
{
    static const std::string odd("<>/=\" \0!-?\xFF", 11);
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
        text += ' ';
        break;
    default:
        text.insert(position, std::string(text, pick(random, text.size()), 1 + pick(random, 40)));
    }
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
        ASSERT_EQ(differenceFromPlain(text), "");
    }
}

TEST(ZXMLReferenceTest, MutatedTextsReadAsThePlainReadingSays)
{
    const std::string seed =
        "<?xml version=\"1.0\" standalone=\"yes\" ?>\n<!-- note -->\n<app title=\"x\">\n"
        "\t<element name=\"key\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=3>\n"
        "\t\t<label text=\"a/b\" type=\"full\" />\n\t</element>\n"
        "\t<buffer length=\"2\"><data values=\"3f8000007fc00001\"></data></buffer>\n</app>\n";
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        std::string text = seed;
        for (std::size_t i = 1 + pick(random, 8); i > 0; --i)
            mutate(text, random);
        ASSERT_EQ(differenceFromPlain(text), "");
    }
}

}  // namespace orvane
