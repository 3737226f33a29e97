// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZFileChooserContent.h"

#include "support/PrivateFolder.h"
#include "support/Test.h"
#include "zlib/common/drawing/Canvas.h"

#include <boost/smart_ptr/make_shared.hpp>

using namespace orvane;

namespace
{

ZFileRequest requestFor(ZFileRequest::Purpose purpose)
{
    auto type = boost::make_shared<ZFiletype>();
    type->extension = "xml";
    type->description = "Preset";
    ZFileRequest request;
    request.purpose = purpose;
    request.types = {type};
    return request;
}

struct ZFileChooserContentTest : testing::Test
{
    ZFileChooserContentTest()
    {
        for (const char* name : {"b.xml", "A.XML", "note.txt", ".hidden.xml", "bad\xff.xml"})
            writeTextFile(folder.Path(name), "");
        std::filesystem::create_directory(folder.Path("sub"));
        writeTextFile(folder.Path("sub/c.xml"), "");
        for (ZFileChooserContent* content : {&open, &save})
            content->SetEnded([this] { ++ended; });
    }

    static void Type(ZFileChooserContent& content, const std::string& text)
    {
        static_cast<void>(content.Key({.code = 0, .text = text}));
    }
    static void Press(ZFileChooserContent& content, ZKeyCode key)
    {
        static_cast<void>(content.Key({.code = key, .text = {}}));
    }
    static void DoubleClickLine(ZFileChooserContent& content, std::int32_t line)
    {
        const ZRect rect = ZFileChooserContent::GetLineRect(line);
        static_cast<void>(
            content.Mouse({ZNativeMouseEvent::kDoubleClick, {rect.left + 1, rect.top + 1}, 0, 0}));
    }

    const PrivateFolder folder;
    int ended = 0;
    ZFileChooserContent open{requestFor(ZFileRequest::kOpen), folder.Path()};
    ZFileChooserContent save{requestFor(ZFileRequest::kSave), folder.Path()};
};

}  // namespace

TEST_F(ZFileChooserContentTest, ListsFoldersThenFilesOfTheType)
{
    EXPECT_EQ(listFolder(folder.Path(), "xml"),
              (std::vector<ZFolderEntry>{
                  {"..", true}, {"sub", true}, {"A.XML", false}, {"b.xml", false}}));
}

TEST_F(ZFileChooserContentTest, OpensFoldersAndFilesByMouseAndKeys)
{
    // The list was read before the files were there.
    DoubleClickLine(open, 0);
    EXPECT_EQ(open.GetFolder(), "/tmp");
    Type(open, folder.Path());
    Press(open, kKeyReturn);
    EXPECT_EQ(open.GetFolder(), folder.Path());
    // From the last line up to the first, and from there down to the folder.
    for (const ZKeyCode key : {kKeyPageDown, kKeyPageUp, kKeyDown, kKeyDown, kKeyUp})
        Press(open, key);
    const ZRect line = ZFileChooserContent::GetLineRect(1);
    Canvas canvas(line.right, line.bottom);
    open.Draw(canvas);
    EXPECT_EQ(canvas.At(line.right - 2, line.top + 2), 0xff961820u) << "the folder is marked";
    DoubleClickLine(open, 1);
    EXPECT_EQ(open.GetFolder(), folder.Path("sub"));
    Press(open, kKeyDown);
    Press(open, kKeyDown);
    Press(open, kKeyReturn);
    EXPECT_EQ(open.GetChosen(), folder.Path("sub/c.xml"));
    EXPECT_EQ(ended, 1);
}

TEST_F(ZFileChooserContentTest, DoesNotOpenAFileThatIsNotThere)
{
    Type(open, "none.xm");
    for (const ZKeyCode key : {kKeyLeft, kKeyBackspace, kKeyEnd})
        Press(open, key);
    Type(open, "l");
    Press(open, kKeyReturn);
    EXPECT_EQ(ended, 0);
    Press(open, kKeyEscape);
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(open.GetChosen(), std::nullopt);
}

TEST_F(ZFileChooserContentTest, AsksBeforeItReplacesAFileAndSavesUnderANewName)
{
    Type(save, "b");
    Press(save, kKeyReturn);
    EXPECT_TRUE(save.IsAsking());
    Press(save, kKeyEscape);
    EXPECT_FALSE(save.IsAsking());
    EXPECT_EQ(ended, 0) << "Escape answers the question only";
    Press(save, kKeyReturn);
    Press(save, kKeyReturn);
    EXPECT_EQ(save.GetChosen(), folder.Path("b.xml"));
    EXPECT_EQ(ended, 1);
    ZFileChooserContent fresh{requestFor(ZFileRequest::kSave), folder.Path()};
    Type(fresh, "new/x");
    Press(fresh, kKeyReturn);
    EXPECT_EQ(fresh.GetChosen(), std::nullopt) << "there is no such folder";
    Press(fresh, kKeyHome);
    for (int i = 0; i < 4; ++i)
        Press(fresh, kKeyDelete);
    Press(fresh, kKeyReturn);
    EXPECT_EQ(fresh.GetChosen(), folder.Path("x.xml"));
}
