// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop's file dialogs, replaced by shell scripts.

#include "zlib/common/documents/ZFileChooser.h"

#include "support/BoxRecorder.h"
#include "support/Eventually.h"
#include "support/PrivateFolder.h"
#include "support/Test.h"
#include "zlib/common/documents/DocumentFixture.h"
#include "zlib/common/objects/ZFile.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZInterfaceThread.h"

#include <future>

using namespace orvane;

namespace
{

using namespace std::chrono_literals;

struct ZFileChooserTest : testing::Test
{
    /// Asks for a file on the interface thread; the result is its path, or "none".
    std::future<std::string> Ask()
    {
        auto promise = std::make_shared<std::promise<std::string>>();
        static_cast<void>(ZInterfaceThread::Post([this, promise] {
            auto type = boost::make_shared<ZFiletype>();
            type->extension = "xml";
            type->description = "Kind";
            ZFiletypeList types("types");
            types.Append(type);
            const auto file = app->ChooseSaveFile("Prompt", "Title", types, 0);
            promise->set_value(file ? file->GetPath().ToNarrow() : "none");
        }));
        return promise->get_future();
    }
    [[nodiscard]] static std::string Answer(std::future<std::string> asked)
    {
        const ZInterfaceUnlock unlocked;
        return asked.wait_for(20s) == std::future_status::ready ? asked.get() : "no answer";
    }

    const PrivateFolder folder;
    const std::string folderPath = folder.Path();
    const EnvironmentVariable path{"PATH", folderPath.c_str()};
    const EnvironmentVariable display{"DISPLAY", ":none"};
    const EnvironmentVariable desktop{"XDG_CURRENT_DESKTOP", "GNOME"};
    BoxRecorder boxes;
    const TestResources resources{""};
    const std::unique_ptr<ZPlugin> app = makePlugin(resources);
    const ZInterfaceThread thread;
};

}  // namespace

TEST_F(ZFileChooserTest, ReturnsTheChosenPathOrNone)
{
    addWindows(*app).topLevel = 77;
    const std::string keepArguments =
        "for a in \"$@\"; do echo \"$a\"; done > " + folder.Path("arguments");
    folder.Install("zenity", keepArguments + "; echo '/tmp/a b.xml'");
    EXPECT_EQ(Answer(Ask()), "/tmp/a b.xml");
    const std::string text = readTextFile(folder.Path("arguments"));
    for (const char* argument : {"--title=Title - Prompt\n", "--modal\n--attach=77\n",
                                 "--file-filter=Kind (*.xml) | *.xml\n"})
        EXPECT_NE(text.find(argument), std::string::npos) << argument;

    folder.Install("kdialog", keepArguments + "; exit 1");
    const EnvironmentVariable kde("XDG_CURRENT_DESKTOP", "KDE");
    EXPECT_EQ(Answer(Ask()), "none");
    EXPECT_TRUE(readTextFile(folder.Path("arguments"))
                    .starts_with("--title\nTitle - Prompt\n--attach\n77\n--getsavefilename\n"));
    EXPECT_TRUE(boxes.boxes.empty());
}

TEST_F(ZFileChooserTest, ShowsThePlainDialogWithoutAProgram)
{
    const auto before =
        ZFileChooser::SetPlainDialog([](const ZFileRequest& request) -> std::optional<std::string> {
            return "/tmp/" + request.prompt.ToNarrow();
        });
    EXPECT_EQ(Answer(Ask()), "/tmp/Prompt.xml");
    EXPECT_TRUE(boxes.boxes.empty());
    const EnvironmentVariable wayland("WAYLAND_DISPLAY", "");
    const EnvironmentVariable none("DISPLAY", "");
    EXPECT_EQ(Answer(Ask()), "none");
    ASSERT_EQ(boxes.boxes.size(), 1u);
    EXPECT_EQ(boxes.boxes[0].title, "Title");
    ZFileChooser::SetPlainDialog(before);
}

TEST_F(ZFileChooserTest, OpenDialogEndsWithItsApplication)
{
    folder.Install("zenity", ": > " + folder.Path("open") + "; while :; do :; done");
    auto asked = Ask();
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(folder.Path("open")); }));
    EXPECT_EQ(Answer(Ask()), "none") << "a second one";
    EXPECT_EQ(boxes.boxes.size(), 1u);
    const ZInterfaceLock lock;
    EXPECT_EQ(app->ChooseOpenFile("", "", ZFiletypeList("types"), 0), nullptr)
        << "not on the interface thread";
    app->EndModalRuns();
    ASSERT_EQ(asked.wait_for(0s), std::future_status::ready) << "it is over by then";
    EXPECT_EQ(asked.get(), "none");
}
