#include "zlib/common/ZFile.h"
#include "zlib/common/ZXMLDocument.h"
#include "zlib/common/ZXMLElement.h"

#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <boost/make_shared.hpp>

namespace orvane
{

TEST(ZXMLDocumentFileTest, ReadsTheWholeFileAndKeepsItsComments)
{
    const PrivateFolder folder;
    const char* const text = "<preset version=\"1.0\"><!-- kept --><key>\xC3\xA4</key></preset>\n";
    writeTextFile(folder.Path("preset.xml"), text);
    const auto file = boost::make_shared<ZFile>("preset", folder.Path("preset.xml"), "xml");
    expectZException(-1, "Unable to seek file as it has not been opened",
                     [&] { const ZXMLDocument closed(file); });
    ASSERT_TRUE(file->Open(ZFile::kModeRead, false));
    file->Seek(5);
    const ZXMLDocument document(file);
    EXPECT_EQ(document.GetText(), text);
    ASSERT_EQ(document.GetChildCount("preset"), 1);
    EXPECT_EQ(document.GetChild("preset")->GetChild("key")->GetText(), "\xC3\xA4");
}

TEST(ZXMLDocumentFileTest, AFileThatOutgrowsTheTextIsRefused)
{
    const PrivateFolder folder;
    writeTextFile(folder.Path("huge.xml"), "");
    std::filesystem::resize_file(folder.Path("huge.xml"), std::uintmax_t{1} << 31);  // a hole
    const auto file = boost::make_shared<ZFile>("huge", folder.Path("huge.xml"), "xml");
    ASSERT_TRUE(file->Open(ZFile::kModeRead, false));
    expectZException(-1, "Unable to read file.", [&] { const ZXMLDocument document(file); });
}

}  // namespace orvane
