// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLDocument.h"

#include "support/ExpectZException.h"
#include "support/PlainXml.h"
#include "support/PrivateFolder.h"
#include "support/TextMutation.h"
#include "zlib/common/objects/ZFile.h"
#include "zlib/common/objects/ZXMLSignature.h"

#include <boost/make_shared.hpp>

#include <filesystem>

using namespace orvane;

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
    for (std::size_t i = 0; i <= found.size(); ++i) {
        const auto holder = i > 0 ? found[i - 1] : nullptr;
        const ZXMLDocument& parent = holder ? *holder : document;
        for (std::int32_t child = 0; child < parent.GetChildCount(); ++child)
            found.push_back(parent.GetChild(child));
    }
    return std::ssize(found);
}

}  // namespace

TEST(ZXMLDocumentTest, ChildrenAreFoundByIndexAndByName)
{
    const ZXMLDocument document = parse("<b i=\"0\" /><a /><b /><c /><b i=\"3\" />");
    EXPECT_EQ(document.GetChildCount("b"), 3);
    EXPECT_EQ(document.GetChild("b")->GetInt32("i"), 0);
    EXPECT_EQ(document.GetChild("b", 2)->GetInt32("i"), 3);
    EXPECT_EQ(document.GetChild("b", 3), nullptr);
}

TEST(ZXMLDocumentTest, BlanksCommentsWithoutBrackets)
{
    EXPECT_EQ(parse("a<!-- b --><c /><!---->").GetText(), "a          <c />       ");
    EXPECT_EQ(parse("<!-- a > b -->").GetText(), "<!-- a > b -->");
    EXPECT_EQ(parse("<!-->").GetText(), "     ");
    EXPECT_EQ(childNames(parse("<!-- a --><b />", ZXMLDocument::Comments::kKept)), "!--,b,");
}

TEST(ZXMLDocumentTest, SplitsChildrenAgainAfterAnAppend)
{
    ZXMLDocument document = parse("<a>1</a>");
    document.AppendText("<b />");
    document.AppendBytes("<c />no", 5);
    for (const char character : std::string("<d />"))
        document.AppendChar(character);
    EXPECT_EQ(childNames(document), "a,b,c,d,");
    EXPECT_EQ(document.GetChild("a")->GetText(), "1");
}

TEST(ZXMLDocumentTest, AcceptsOneDeclarationOnly)
{
    const std::string declaration = R"(<?xml version="1.0" standalone="yes" ?>)";
    const auto isValid = [](const std::string& text) {
        return HasValidDeclaration(text.data(), static_cast<std::int32_t>(text.size()));
    };
    EXPECT_TRUE(isValid(declaration + "\n"));
    EXPECT_FALSE(isValid(declaration));
    EXPECT_FALSE(isValid(R"(<?xml version="1.0" encoding="UTF-8"?><app></app>)"));
}

// A quadratic reading takes minutes for each of these texts, and a stack frame for each level of
// nesting overflows the stack.
TEST(ZXMLDocumentTest, ReadsNestedAndRepeatedTagsInLinearTimeAndReleasesThemLevelByLevel)
{
    const auto start = std::chrono::steady_clock::now();
    const std::size_t times = 100000;
    const std::pair<std::string, std::size_t> cases[] = {
        {repeat("<a>", times) + repeat("</a>", times), times},
        {repeat("<a>", times), times},
        {repeat("<a></a>", times), times},
        {repeat("</a>", times), 0},
        {repeat("<", times), 0},
        {"<a " + repeat("b=\"1\" ", times) + ">", 1},
    };
    for (const auto& [text, elements] : cases) {
        SCOPED_TRACE(text.substr(0, 20));
        EXPECT_EQ(countElements(parse(text)), static_cast<std::int64_t>(elements));
    }
    // GetChild on each level keeps all levels alive until the document is destroyed.
    const ZXMLDocument document = parse(repeat("<a>", times));
    std::size_t level = 0;
    for (auto element = document.GetChild("a"); element; element = element->GetChild("a"))
        ++level;
    EXPECT_EQ(level, times);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

TEST(ZXMLDocumentTest, ReadsWholeFilesUpToTheLargestSize)
{
    const PrivateFolder folder;
    const std::string path = folder.Path("preset.xml");
    const char* const text = "<preset version=\"1.0\"><!-- kept --><key>\xC3\xA4</key></preset>\n";
    writeTextFile(path, text);
    const auto file = boost::make_shared<ZFile>("preset", path, "xml");
    ASSERT_TRUE(file->Open(ZFile::kModeRead, false));
    file->Seek(5);
    EXPECT_EQ(ZXMLDocument(file).GetText(), text);

    std::filesystem::resize_file(path, ZXMLDocument::kMaxBytes);  // a hole
    EXPECT_EQ(std::ssize(ZXMLDocument(file).GetText()), ZXMLDocument::kMaxBytes);
    std::filesystem::resize_file(path, ZXMLDocument::kMaxBytes + 1);
    expectZException(ZException::kTooLarge,
                     "This preset has 16777217 bytes. Presets of more than 16777216 bytes are not "
                     "read.",
                     [&] { const ZXMLDocument document(file); });
}

TEST(ZXMLDocumentTest, RandomTextsAreReadAsByAPlainReader)
{
    const std::vector<std::string> pieces{"<a>",      "</a>", "<a />", "<b>",     "</b>", "<b />",
                                          "<?xml ?>", "<",    "text",  "</?xml>", "</a "};
    const std::string description =
        "<?xml version=\"1.0\" standalone=\"yes\" ?>\n<!-- note -->\n<app title=\"x\">\n"
        "\t<element name=\"key\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=3>\n"
        "\t\t<label text=\"a/b\" type=\"full\" />\n\t</element>\n"
        "\t<buffer length=\"2\"><data values=\"3f8000007fc00001\"></data></buffer>\n</app>\n";
    std::mt19937 random(20);
    for (int round = 0; round < 10000; ++round) {
        std::string composed;
        // Few unfinished tags, because they end the text.
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

TEST(ZXMLSignatureTest, RefusesAnyAlteredOrMissingByte)
{
    // description.xml, signed by the build.
    const std::string text = readTextFile(KESTRUNE_SIGNED_DESCRIPTION);
    const auto verifies = [](const std::string& each) {
        return VerifySignature(each.data(), static_cast<std::int32_t>(each.size()));
    };
    const std::size_t tag = text.find("<signature");
    const std::size_t digits = text.find('"', tag) + 1;
    std::string windows;
    EXPECT_TRUE(verifies(text.substr(0, digits + 512)));
    for (std::size_t i = 0; i < digits + 512; ++i) {
        windows += text[i] == '\n' ? "\r\n" : std::string(1, text[i]);
        EXPECT_FALSE(verifies(text.substr(0, i))) << i;
        // Of the attribute's name only the length matters, and line ends are not covered.
        if ((i > tag + 9 && i < digits) || text[i] == '\n')
            continue;
        std::string altered = text;
        altered[i] = static_cast<char>(altered[i] ^ 1);
        EXPECT_FALSE(verifies(altered)) << i;
    }
    EXPECT_TRUE(verifies(windows)) << "with other line ends";
}
