#include "support/PlainXml.h"
#include "support/TextMutation.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace orvane
{

TEST(ZXMLReferenceTest, SharedTextGivesTheChildrenOfThePlainReading)
{
    const std::vector<std::string> pieces{
        "<a>",     "</a>",     "<a />", "<b>",        "</b>", "<b />",
        "<a/>",    "<?xml ?>", "<",     "<!-- x -->", "text", "<a c=\"1\" d=2>",
        "</?xml>", ">",        "</a ",
    };
    const std::string description =
        "<?xml version=\"1.0\" standalone=\"yes\" ?>\n<!-- note -->\n<app title=\"x\">\n"
        "\t<element name=\"key\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=3>\n"
        "\t\t<label text=\"a/b\" type=\"full\" />\n\t</element>\n"
        "\t<buffer length=\"2\"><data values=\"3f8000007fc00001\"></data></buffer>\n</app>\n";
    std::mt19937 random(20);
    for (int round = 0; round < 20000; ++round) {
        std::string composed;
        // Few unfinished tags: they end the text for all that follows.
        for (std::size_t i = pick(random, 24); i > 0; --i) {
            const std::string& piece = pieces[pick(random, pieces.size())];
            composed += (piece == "<" || piece == "</a ") && pick(random, 4) ? "<a>" : piece;
        }
        ASSERT_EQ(differenceFromPlain(composed), "");
        std::string spoilt = description;
        for (std::size_t i = 1 + pick(random, 8); i > 0; --i)
            mutate(spoilt, random);
        ASSERT_EQ(differenceFromPlain(spoilt), "");
    }
}

}  // namespace orvane
