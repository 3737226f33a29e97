#include "zlib/common/ZFile.h"
#include "zlib/common/ZXMLDocument.h"

#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include <boost/make_shared.hpp>

namespace orvane
{

TEST(ZXMLDocumentFileTest, ReadsTheWholeFileAndRefusesOneThatOutgrowsTheText)
{
    const PrivateFolder folder;
    const std::string path = folder.Path("preset.xml");
    const char* const text = "<preset version=\"1.0\"><!-- kept --><key>\xC3\xA4</key></preset>\n";
    writeTextFile(path, text);
    const auto file = boost::make_shared<ZFile>("preset", path, "xml");
    expectZException(-1, "Unable to seek file as it has not been opened",
                     [&] { const ZXMLDocument closed(file); });
    ASSERT_TRUE(file->Open(ZFile::kModeRead, false));
    file->Seek(5);
    EXPECT_EQ(ZXMLDocument(file).GetText(), text);

    std::filesystem::resize_file(path, std::uintmax_t{1} << 31);  // a hole
    expectZException(-1, "Unable to read file.", [&] { const ZXMLDocument document(file); });
}

}  // namespace orvane
