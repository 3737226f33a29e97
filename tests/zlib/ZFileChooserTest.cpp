// The desktop's own file chooser: programs of the test's own stand for it.

#include "support/BoxRecorder.h"
#include "support/PrivateFolder.h"
#include "zlib/DocumentFixture.h"
#include "zlib/common/ZFile.h"
#include "zlib/common/ZInterfaceLock.h"
#include "zlib/common/ZInterfaceThread.h"

#include <gtest/gtest.h>

#include <future>

namespace orvane
{

namespace
{

using namespace std::chrono_literals;

/// A variable of the environment, as it was again in the end.
class Variable
{
public:
    Variable(const char* name, const std::string& value)
        : mName(name)
        , mBefore(std::getenv(name) ? std::getenv(name) : "")
    {
        setenv(name, value.c_str(), 1);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { setenv(mName, mBefore.c_str(), 1); }

private:
    const char* const mName;
    const std::string mBefore;
};

class ZFileChooserTest : public testing::Test
{
protected:
    /// A program of that name that the shell runs.
    void Install(const std::string& name, const std::string& script)
    {
        std::ofstream(folder.Path(name)) << "#!/bin/sh\n" << script << '\n';
        std::filesystem::permissions(folder.Path(name), std::filesystem::perms::owner_all);
    }
    /// Asks on the interface thread; gives back the path, or "none".
    std::future<std::string> Ask()
    {
        auto promise = std::make_shared<std::promise<std::string>>();
        static_cast<void>(ZInterfaceThread::Post([this, promise] {
            auto type = boost::make_shared<ZFiletype>();
            type->extension = "xml";
            type->description = "Kind";
            const auto file = app->ChooseSaveFile("prompt", "Title", {type}, 0);
            promise->set_value(file ? file->GetPath().ToNarrow() : "none");
        }));
        return promise->get_future();
    }
    [[nodiscard]] static std::string Answer(std::future<std::string> asked)
    {
        return asked.wait_for(20s) == std::future_status::ready ? asked.get() : "no answer";
    }
    void WaitForFile(const std::string& name) const
    {
        for (int i = 0; i < 2000 && !std::filesystem::exists(folder.Path(name)); ++i)
            std::this_thread::sleep_for(10ms);
    }

    const PrivateFolder folder;
    const Variable path{"PATH", folder.Path()};
    const Variable display{"DISPLAY", ":none"};
    const Variable desktop{"XDG_CURRENT_DESKTOP", "GNOME"};
    BoxRecorder boxes;
    const TestResources resources{""};
    const std::unique_ptr<ZPlugin> app = makePlugin(resources);
    const ZInterfaceThread thread;
};

}  // namespace

TEST_F(ZFileChooserTest, TheUsersChoiceIsNamedAndACancelledOneIsNone)
{
    Install("zenity", "for a in \"$@\"; do echo \"$a\"; done > " + folder.Path("arguments") +
                          "; echo '/tmp/a b.xml'");
    EXPECT_EQ(Answer(Ask()), "/tmp/a b.xml");
    std::ifstream arguments(folder.Path("arguments"));
    const std::string text(std::istreambuf_iterator<char>(arguments), {});
    EXPECT_NE(text.find("--title=Title\n"), std::string::npos);
    EXPECT_NE(text.find("--file-filter=Kind (*.xml) | *.xml\n"), std::string::npos);

    Install("kdialog", "exit 1");
    const Variable kde("XDG_CURRENT_DESKTOP", "KDE");
    EXPECT_EQ(Answer(Ask()), "none");
    EXPECT_TRUE(boxes.boxes.empty());
}

TEST_F(ZFileChooserTest, WithoutAProgramOrADisplayABoxSaysSo)
{
    EXPECT_EQ(Answer(Ask()), "none");
    Install("zenity", "echo /tmp/file.xml");
    const Variable wayland("WAYLAND_DISPLAY", "");
    const Variable none("DISPLAY", "");
    EXPECT_EQ(Answer(Ask()), "none");
    ASSERT_EQ(boxes.boxes.size(), 2u);
    EXPECT_EQ(boxes.boxes[0].title, "Title");
}

TEST_F(ZFileChooserTest, AnOpenChooserBlocksNobodyAndEndsWithItsInstance)
{
    Install("zenity", ": > " + folder.Path("open") + "; while :; do :; done");
    auto asked = Ask();
    WaitForFile("open");
    EXPECT_EQ(Answer(Ask()), "none") << "a second one";
    EXPECT_EQ(boxes.boxes.size(), 1u);
    const ZInterfaceLock lock;
    EXPECT_EQ(app->ChooseOpenFile("", "", {}, 0), nullptr) << "not on the interface thread";
    app->EndModalRuns();
    ASSERT_EQ(asked.wait_for(0s), std::future_status::ready) << "it is over by then";
    EXPECT_EQ(asked.get(), "none");
}

}  // namespace orvane
