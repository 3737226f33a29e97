// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZCommandList.h"

#include "support/Test.h"
#include "zlib/common/documents/DocumentFixture.h"
#include "zlib/common/documents/ZCommand.h"
#include "zlib/common/documents/ZDocumentManager.h"

using namespace orvane;

namespace
{

const char* const kCommands =
    "<commandlist>"
    "<command name=\"first\" target=\"win\"><menu name=\"First\" /><hotkey key=\"65\" />"
    "<message id=\"ZABOUT\"><int32 name=\"value\" value=\"5\" /></message></command>"
    "<command name=\"own\" target=\"win\"><menu name=\"Own\" id=\"7\" />"
    "<hotkey key=\"65\" shift=\"true\" /><message id=\"ZSAVE\" /></command>"
    "<command name=\"off\" target=\"win\" state=\"disabled\">"
    "<hotkey key=\"66\" control=\"true\" /><message id=\"ZCUT\" /></command>"
    "<command name=\"on\" target=\"win\"><hotkey key=\"66\" control=\"true\" />"
    "<message id=\"ZCOPY\" /></command>"
    "<command name=\"follower\" target=\"doc\"><element target=\"switch\" />"
    "<message id=\"ZPRESETSAVE\" /></command>"
    "<command name=\"lost\"><message id=\"ZPLAY\" /></command>"
    "</commandlist>";

const char* const kDocuments =
    "<documentmanager name=\"Test File\" type=\"sdi\"><documenttypes>"
    "<doctype class=\"ZAudioDocumentClass\" name=\"Plain\"><elements>"
    "<element name=\"switch\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=\"1\">"
    "<discrete name=\"Off\" /><discrete name=\"On\" /></element>"
    "</elements></doctype></documenttypes></documentmanager>";

struct ZCommandListTest : testing::Test
{
    ZCommandListTest() { app->AddCommandList(xmlOf(kCommands)); }

    [[nodiscard]] boost::shared_ptr<ZCommand> Command(const char* name) const
    {
        boost::shared_ptr<ZCommand> command;
        EXPECT_TRUE(list().GetCommand(name, command)) << name;
        return command;
    }
    [[nodiscard]] ZCommandList& list() const { return *app->GetCommandList(); }
    void Stroke(std::int32_t key, bool shift, bool control)
    {
        list().HandleZMessage(
            messageWith(ZKEYCOMMAND, "hotkey", key, "shift", shift, "control", control));
    }

    const TestResources resources{""};
    const std::unique_ptr<ZPlugin> app = makePlugin(resources);
    WindowRecorder& windows = addWindows(*app);
};

}  // namespace

TEST_F(ZCommandListTest, KeyDispatchesTheFirstEnabledCommand)
{
    Stroke(65, false, false);
    Stroke(65, true, false);
    Stroke(66, false, true);
    EXPECT_EQ(windows.Ids(), (std::vector<std::int32_t>{ZABOUT, ZSAVE, ZCOPY}));
    Stroke(65, true, true);
    Stroke(66, false, false);
    Command("on")->Disable();
    Stroke(66, false, true);
    EXPECT_EQ(windows.told.size(), 3u);
}

TEST_F(ZCommandListTest, MessagesEnableOneOrAllCommandsAndRenameOne)
{
    list().HandleZMessage(messageWith<ZString>(ZDISABLE, "commandName", "first"));
    EXPECT_FALSE(Command("first")->IsEnabled());
    EXPECT_TRUE(Command("own")->IsEnabled());
    EXPECT_FALSE(Command("off")->IsEnabled());
    list().HandleZMessage(messageWith<ZString>(ZENABLE, "commandName", "nobody"));
    list().HandleZMessage(
        messageWith<ZString>(ZLABEL, "commandName", "own", "commandLabel", ZString("Renamed")));
    EXPECT_STREQ(Command("own")->GetMenuName(), "Renamed");
    list().HandleZMessage(boost::make_shared<ZMessage>(ZENABLE));
    EXPECT_TRUE(Command("first")->IsEnabled());
    EXPECT_TRUE(Command("off")->IsEnabled());
}

TEST_F(ZCommandListTest, MenuChoiceDispatchesACopyOfTheMessage)
{
    EXPECT_EQ(Command("own")->GetMenuId(), 7);
    EXPECT_EQ(Command("off")->GetMenuId(), 50001) << "an id of its own uses up no number";
    list().HandleZMessage(messageWith(ZCommandList::kMenuChoice, "MenuID", 50000, "CmdWindow", 42));
    Command("first")->Dispatch();
    ASSERT_EQ(windows.told.size(), 2u);
    std::int32_t window = 0;
    std::int32_t value = 0;
    EXPECT_TRUE(windows.told[0]->Find("CmdWindow", window) && window == 42);
    EXPECT_TRUE(windows.told[0]->Find("value", value) && value == 5);
    EXPECT_FALSE(windows.told[1]->Find("CmdWindow", window));
    EXPECT_EQ(windows.told[1], Command("first")->GetMessage());
}

TEST_F(ZCommandListTest, CheckMarkFollowsItsElement)
{
    Command("lost")->Dispatch();
    Command("follower")->Dispatch();
    EXPECT_TRUE(windows.told.empty()) << "without a receiver nothing happens";

    app->AddDocumentManager(xmlOf(kDocuments));
    EXPECT_FALSE(Command("follower")->IsChecked());
    app->GetDocumentManager()->HandleZMessage(messageWith<ZString>(ZFILENEW, "filename", "Plain"));
    EXPECT_TRUE(Command("follower")->IsChecked());

    app->GetCurrentDocument()->FindElement("switch")->SetDiscrete(0, false);
    app->Tick();
    EXPECT_FALSE(Command("follower")->IsChecked());
}
