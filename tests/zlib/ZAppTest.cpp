#include "zlib/common/ZApp.h"

#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"
#include "zlib/DocumentFixture.h"
#include "zlib/common/ZAudioManager.h"
#include "zlib/common/ZBrowserLaunch.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZCommandList.h"
#include "zlib/common/ZDataFiles.h"
#include "zlib/common/ZDocument.h"
#include "zlib/common/ZDocumentManager.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace orvane
{

namespace
{

const std::string kCommandList =
    "<commandlist><command name=\"cmdNew\" target=\"doc\"><message id=\"ZFILENEW\">"
    "<ZString name=\"filename\" value=\"Plain\" /></message></command></commandlist>\n";
const std::string kDocumentManager =
    "<documentmanager name=\"Test File\" type=\"sdi\"><documenttypes>"
    "<doctype class=\"ZAudioDocumentClass\" name=\"Plain\" /></documenttypes>"
    "</documentmanager>\n";
const std::string kStartup = "<startup><startupitem command=\"cmdNew\" /></startup>\n";
const std::string kWhole = kCommandList + "<audiomanager></audiomanager>\n" + kDocumentManager +
                           "<unknown></unknown>" + kStartup;

void expectStartFails(const ZResources& resources, std::int32_t code, const std::string& text)
{
    const auto app = makePlugin(resources);
    expectZException(code, text, [&] { start(*app); });
}

}  // namespace

TEST(ZAppTest, StartBuildsTheManagersAndRunsTheStartUpCommands)
{
    const TestResources resources(kWhole, " title=\"Whole\" identifier=\"com.orvane.whole\"");
    const auto app = makePlugin(resources);
    app->SetIdentifier("before");
    start(*app);
    EXPECT_EQ(app->GetTitle().ToNarrow(), "Whole");
    EXPECT_EQ(app->GetIdentifier().ToNarrow(), "com.orvane.whole");
    EXPECT_NE(app->GetAudioManager(), nullptr);
    ASSERT_NE(app->GetCurrentDocument(), nullptr);
    EXPECT_EQ(app->GetCurrentDocument()->GetName(), "Untitled Test File 1");
    EXPECT_EQ(app->GetMainThreadId(), std::this_thread::get_id());
    std::thread other([&] { app->WaitUntilBuilt(); });
    app->WaitUntilBuilt();
    other.join();
}

TEST(ZAppTest, WhatADescriptionLeavesOutStaysOut)
{
    const TestResources resources(kStartup, "");
    const auto app = makePlugin(resources);
    app->SetIdentifier("before");
    start(*app);
    EXPECT_EQ(app->GetTitle().ToNarrow(), "Untitled App");
    EXPECT_EQ(app->GetIdentifier().ToNarrow(), "before");
    EXPECT_EQ(app->GetCurrentDocument(), nullptr);
    EXPECT_EQ(app->GetAudioManager(), nullptr);
    expectZException(-1, "Unable to return ZDocumentManager because it doesn't exist.",
                     [&] { static_cast<void>(app->GetDocumentManager()); });
    expectZException(-1, "Unable to return ZCommandManager because it doesn't exist.",
                     [&] { static_cast<void>(app->GetCommandList()); });
    expectZException(-1, "Unable to return ZPreferenceManager because it doesn't exist.",
                     [&] { app->GetPreferenceManager(); });
    expectZException(-1, "Unable to return ZMidiManager because it doesn't exist.",
                     [&] { app->GetMidiManager(); });
    expectZException(-1, "Unable to return MainWindow because it doesn't exist.",
                     [&] { static_cast<void>(app->GetMainWindow()); });
}

TEST(ZAppTest, WhereTheStartUpStandsInTheDescriptionDoesNotMatter)
{
    const TestResources resources(kStartup + kDocumentManager + kCommandList);
    const auto app = makePlugin(resources);
    start(*app);
    EXPECT_NE(app->GetCurrentDocument(), nullptr);
}

TEST(ZAppTest, ADescriptionThatIsNotWholeDoesNotStart)
{
    const std::string kNotLoaded = "Failed to load resource.";
    const std::string declaration = "<?xml version=\"1.0\" standalone=\"yes\" ?>\n";
    using Whole = TestResources::Whole;
    const TestResources whole(kWhole);
    const auto app = makePlugin(whole);
    app->SetResourceName("other.xml");
    expectZException(-1, kNotLoaded, [&] { start(*app); });
    expectStartFails(TestResources(Whole{signDescription("<app></app>")}), -1, kNotLoaded);
    expectStartFails(TestResources(Whole{declaration + "<app></app>"}), 5, kNotLoaded);
    std::string altered = signDescription(declaration + "<app title=\"Test\"></app>\n");
    altered.replace(altered.find("Test"), 4, "Best");
    expectStartFails(TestResources(Whole{altered}), 5, kNotLoaded);
    expectStartFails(TestResources(Whole{signDescription(declaration + "<apps></apps>\n")}), -1,
                     kNotLoaded);
}

TEST(ZAppTest, AFaultInTheDescriptionIsToldByItsTextAndTheNextStartWorks)
{
    const std::string unknownClass =
        "<documentmanager name=\"a\"><documenttypes><doctype class=\"NobodyClass\" "
        "name=\"Plain\" /></documenttypes></documentmanager>";
    expectStartFails(TestResources(kCommandList + unknownClass + kStartup), -1,
                     "Unregistered Class NobodyClass found in xml\n");
    expectStartFails(
        TestResources(kCommandList + "<startup><startupitem command=\"cmdNone\" /></startup>"), -1,
        "Couldn't find command 'cmdNone' of a startupitem in the command list");
    expectStartFails(
        TestResources("<commandlist><command><message id=\"ZNONE\" /></command></commandlist>"), -1,
        "Message not found");
    const TestResources resources(kWhole);
    const auto app = makePlugin(resources);
    start(*app);
    EXPECT_NE(app->GetCurrentDocument(), nullptr);
}

TEST(ZAppTest, AStandAloneProgramEndsWhenItsDescriptionFails)
{
    const TestResources resources(kWhole);
    EXPECT_EXIT(
        {
            ZPlugin app(resources);
            app.SetResourceName("other.xml");
            start(app);
        },
        testing::ExitedWithCode(255), "Failed to load resource.");
}

TEST(ZAppTest, OtherTagsAreRefusedByName)
{
    const TestResources resources("");
    const auto app = makePlugin(resources);
    const auto other = xmlOf("<other></other>");
    expectZException(-1, "ZApp::AddWindowManager,  XML tag is not a <windowmanager>.",
                     [&] { app->AddWindowManager(other); });
    expectZException(-1, "ZApp::AddAudioManager, XML tag is not a <audiomanager>.",
                     [&] { app->AddAudioManager(other); });
    expectZException(-1, "ZApp::AddCommandList,  XML tag is not a <commandlist>.",
                     [&] { app->AddCommandList(other); });
}

TEST(ZAppTest, OfTwoManagersTheLastOneStays)
{
    const TestResources resources(kWhole + kCommandList + kDocumentManager +
                                  "<audiomanager></audiomanager>" +
                                  "<documentmanager name=\"last\" />");
    const auto app = makePlugin(resources);
    app->SetName("Doubled");
    const TraceRecorder trace;
    start(*app);
    EXPECT_EQ(app->GetDocumentManager()->GetName(), "last");
    EXPECT_TRUE(TraceRecorder::Has("Doubled starting up...\n"));
    for (const char* warning :
         {"ZApp::AddDocumentManager,  mDocumentManager already created. Multiple top level "
          "document managers?",
          "ZApp::AddAudioManager, mAudioManager already created. Multiple top level window "
          "managers?",
          "ZApp::AddWindowManager,  mCommandList already created. Multiple top level command "
          "lists?"})
        EXPECT_TRUE(TraceRecorder::Has(std::string("\nWarning: ") + warning + "\n")) << warning;
}

TEST(ZAppTest, MessagesGoToTheManagersTheyAreFor)
{
    const TestResources resources(kWhole);
    const auto app = makePlugin(resources);
    start(*app);
    WindowRecorder& windows = addWindows(*app);
    app->HandleZMessage(boost::make_shared<ZMessage>(ZSHOWDIALOG));
    app->HandleZMessage(boost::make_shared<ZMessage>(ZSHOWSYSDIALOG));
    EXPECT_EQ(windows.Ids(), (std::vector<std::int32_t>{ZSHOWDIALOG, ZSHOWSYSDIALOG}));
    app->HandleZMessage(messageWith<ZString>(ZDOCUMENTNEW, "filename", "Plain"));
    EXPECT_EQ(app->GetDocumentManager()->GetDocumentCount(), 2);
    app->HandleZMessage(boost::make_shared<ZMessage>(ZWINDOWCLOSED));
    EXPECT_EQ(app->GetDocumentManager()->GetDocumentCount(), 2) << "no end of a plug-in";
    app->HandleZMessage(messageWith<std::int32_t>(ZQUIT, "QuitInt", 3));
    EXPECT_EQ(app->GetDocumentManager()->GetDocumentCount(), 0);
    EXPECT_EQ(app->GetQuitCode(), 3);
    expectZException(-1, "Couldn't find URL in message",
                     [&] { app->HandleZMessage(boost::make_shared<ZMessage>(ZGOTOURL)); });
    expectZException(-1, "Couldn't find Menu Handle in Message",
                     [&] { app->HandleZMessage(boost::make_shared<ZMessage>(ZMENUSELECTION)); });
    expectZException(-1, "Couldn't find position in Message", [&] {
        app->HandleZMessage(messageWith<std::uint64_t>(ZMENUSELECTION, "Handle", 1));
    });
}

TEST(ZAppTest, ADocumentThatStaysOpenKeepsTheApplication)
{
    struct Open : ZDocument
    {
        using ZDocument::ZDocument;
        bool AgreesToClose() override { return false; }
    };
    const TestResources resources(kCommandList +
                                  "<documentmanager name=\"a\"><documenttypes>"
                                  "<doctype class=\"OpenClass\" name=\"Plain\" />"
                                  "</documenttypes></documentmanager>" +
                                  kStartup);
    const auto app = makePlugin(resources);
    app->GetClassRegistry().AddStandard<Open>("OpenClass");
    start(*app);
    EXPECT_FALSE(app->CanQuit());
    EXPECT_NE(app->GetCurrentDocument(), nullptr);
}

TEST(ZAppTest, InstancesComeAndGoInAnyOrder)
{
    const TestResources resources(kWhole);
    auto first = makePlugin(resources);
    auto second = makePlugin(resources);
    start(*first);
    start(*second);
    ZHandler loose;
    EXPECT_EQ(loose.GetApp(), second.get());
    EXPECT_EQ(first->GetCurrentDocument()->GetApp(), first.get());
    first.reset();
    EXPECT_EQ(loose.GetApp(), second.get());
    second.reset();
    EXPECT_EQ(loose.GetApp(), nullptr);
}

TEST(ZAppTest, ADocumentMayOutliveItsApplication)
{
    const TestResources resources(kWhole);
    auto app = makePlugin(resources);
    start(*app);
    const auto document = app->GetCurrentDocument();
    app.reset();
    EXPECT_EQ(document->GetLooper(), nullptr);
}

TEST(ZAppTest, GivesTextsSettingsAndVersion)
{
    const PrivateFolder folder;
    const EnvironmentVariable config("XDG_CONFIG_HOME", folder.Path().c_str());
    const TestResources resources("");
    const auto app = makePlugin(resources);
    app->SetIdentifier("com.orvane.test");
    ZString text = "kept";
    EXPECT_FALSE(app->GetResourceString(8, text));
    EXPECT_EQ(text.ToNarrow(), "kept");
    EXPECT_TRUE(app->GetResourceString(7, text));
    EXPECT_EQ(text.ToNarrow(), "seven");
    std::int32_t value = 0;
    EXPECT_FALSE(app->GetRegistryInt("size", value));
    EXPECT_TRUE(app->SetRegistryInt("size", -3));
    EXPECT_TRUE(app->GetRegistryInt("size", value));
    EXPECT_EQ(value, -3);
    app->GetVersion(text);
    EXPECT_TRUE(text.IsEmpty());
    app->SetVersion({1, 0, 12});
    app->GetVersion(text);
    EXPECT_EQ(text.ToNarrow(), "1.0.12");
}

TEST(ZAppTest, AnAddressOfTheWebIsOpenedByTheDesktop)
{
    const PrivateFolder folder;
    writeTextFile(folder.Path("xdg-open"),
                  "#!/bin/sh\nprintf '%s' \"$1\" >'" + folder.Path("part") + "'\nmv '" +
                      folder.Path("part") + "' '" + folder.Path("opened") + "'\n");
    std::filesystem::permissions(folder.Path("xdg-open"), std::filesystem::perms::owner_all);
    const EnvironmentVariable path("PATH", (folder.Path() + ":" + std::getenv("PATH")).c_str());
    const TestResources resources("");
    const auto app = makePlugin(resources);
    app->HandleZMessage(messageWith<ZString>(ZGOTOURL, "URL", "file:///etc/passwd"));
    app->HandleZMessage(messageWith<ZString>(ZGOTOURL, "URL", "https://orvane.example/$(id)?a=b"));
    for (int i = 0; i < 500 && !std::filesystem::exists(folder.Path("opened")); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(readTextFile(folder.Path("opened")), "https://orvane.example/$(id)?a=b");
}

TEST(ZBrowserLaunchTest, OnlyAddressesOfTheWebAreOpened)
{
    for (const char* address : {"http://a", "https://a.b/c?d=e%20f", "HTTPS://A"})
        EXPECT_TRUE(ZBrowserLaunch::IsWebAddress(address)) << address;
    for (const char* address : {"", "http://", "https:/a", "file:///etc/passwd", "-h",
                                "javascript:1", "http://a b", "http://a\n", " http://a", "ftp://a"})
        EXPECT_FALSE(ZBrowserLaunch::IsWebAddress(address)) << address;
}

TEST(ZDataFilesTest, TheUsersFileComesBeforeTheSystems)
{
    const PrivateFolder user;
    const PrivateFolder system;
    const EnvironmentVariable home("XDG_DATA_HOME", user.Path().c_str());
    const EnvironmentVariable dirs("XDG_DATA_DIRS", ("relative:" + system.Path()).c_str());
    EXPECT_EQ(findDataFile("kolm.test"), std::nullopt);
    for (const PrivateFolder* folder : {&system, &user}) {
        std::filesystem::create_directory(folder->Path("Orvane"));
        writeTextFile(folder->Path("Orvane/kolm.test"), "font");
        EXPECT_EQ(findDataFile("kolm.test"), folder->Path("Orvane/kolm.test"));
    }
}

}  // namespace orvane
