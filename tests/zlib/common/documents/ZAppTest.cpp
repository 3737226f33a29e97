// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZApp.h"

#include "support/Eventually.h"
#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"
#include "support/RealtimeGuard.h"
#include "zlib/common/documents/DocumentFixture.h"
#include "zlib/common/documents/ZAudioManager.h"
#include "zlib/common/documents/ZBrowserLaunch.h"
#include "zlib/common/documents/ZCommandList.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZUserSettings.h"

using namespace orvane;

namespace
{

const std::string kCommandList =
    "<commandlist><command name=\"cmdNew\" target=\"doc\"><message id=\"ZFILENEW\">"
    "<ZString name=\"filename\" value=\"Plain\" /></message></command></commandlist>\n";
const std::string kStartup = "<startup><startupitem command=\"cmdNew\" /></startup>\n";

std::string documentsOf(const std::string& className)
{
    return "<documentmanager name=\"Test File\" type=\"sdi\"><documenttypes><doctype class=\"" +
           className + "\" name=\"Plain\" /></documenttypes></documentmanager>\n";
}

// The start-up commands run after all managers are created, wherever they stand in the file.
const std::string kWhole = kStartup + kCommandList + "<audiomanager></audiomanager>\n" +
                           documentsOf("ZAudioDocumentClass") + "<unknown></unknown>";

void expectStartFails(const ZResources& resources, std::int32_t code, const std::string& text)
{
    expectZException(code, text, [app = makePlugin(resources)] { start(*app); });
}

const std::string kParameters =
    kStartup + kCommandList +
    "<documentmanager name=\"Test File\" type=\"sdi\"><documenttypes>"
    "<doctype class=\"ZAudioDocumentClass\" name=\"Plain\"><elements>"
    "<element name=\"hidden\" class=\"ZElementClass\" type=\"ZFLOAT\" />"
    "<element name=\"group\" class=\"ZElementClass\" type=\"ZGROUP\" exposed=\"true\">"
    "<subelements>"
    "<element name=\"level\" class=\"ZElementClass\" type=\"ZFLOAT\" exposed=\"true\" "
    "min=\"-2\" max=\"2\"><label type=\"full\" text=\"The Level\" /></element>"
    "<element name=\"place\" class=\"ZElementClass\" type=\"ZPOS\" exposed=\"true\" />"
    "</subelements></element>"
    "<element name=\"empty\" class=\"ZElementClass\" type=\"ZGROUP\" exposed=\"true\" />"
    "<element name=\"choice\" class=\"ZElementClass\" type=\"ZDISCRETE\" exposed=\"true\">"
    "<discrete name=\"A\" /><discrete name=\"B\" /></element>"
    "</elements></doctype></documenttypes></documentmanager>\n";

struct ZPluginTest : testing::Test
{
    ZPluginTest()
    {
        start(*app);
        document = app->GetCurrentDocument();
        app->ExposeElements(*document);
    }

    const TestResources resources{kParameters};
    std::unique_ptr<ZPlugin> app = makePlugin(resources);
    boost::shared_ptr<ZDocument> document;
};

}  // namespace

TEST(ZAppTest, StartMakesTheManagersAndRunsTheStartUpCommands)
{
    const PrivateFolder folder;
    const EnvironmentVariable config("XDG_CONFIG_HOME", folder.Path().c_str());
    const TestResources resources(kWhole, " title=\"Whole\" identifier=\"com.orvane.whole\"");
    const auto app = makePlugin(resources);
    app->SetIdentifier("before");
    start(*app);
    EXPECT_EQ(app->GetTitle().ToNarrow(), "Whole");
    std::int32_t stored = 0;
    EXPECT_TRUE(app->SetRegistryInt("size", 2));
    EXPECT_TRUE(ZUserSettings("com.orvane.whole").GetInt("size", stored));
    EXPECT_NE(app->GetAudioManager(), nullptr);
    ASSERT_NE(app->GetCurrentDocument(), nullptr);
    EXPECT_EQ(app->GetCurrentDocument()->GetName(), "Untitled Test File 1");
}

TEST(ZAppTest, FaultyDescriptionFailsTheStart)
{
    using Whole = TestResources::Whole;
    const std::string notLoaded = "Failed to load resource.";
    const std::string declaration = "<?xml version=\"1.0\" standalone=\"yes\" ?>\n";
    const TestResources resources(kWhole);
    const auto other = makePlugin(resources);
    other->SetResourceName("other.xml");
    expectZException(notLoaded, [&] { start(*other); });
    expectStartFails(TestResources(Whole{declaration + "<app></app>"}), 5, notLoaded);
    std::string altered = signDescription(declaration + "<app title=\"Test\"></app>\n");
    altered.replace(altered.find("Test"), 4, "Best");
    expectStartFails(TestResources(Whole{altered}), 5, notLoaded);
    expectStartFails(TestResources(kCommandList + documentsOf("NobodyClass") + kStartup), -1,
                     "Unregistered Class NobodyClass found in xml\n");
    expectStartFails(
        TestResources(kCommandList + "<startup><startupitem command=\"cmdNone\" /></startup>"), -1,
        "Couldn't find command 'cmdNone' of a startupitem in the command list");

    const auto app = makePlugin(resources);
    start(*app);
    EXPECT_NE(app->GetCurrentDocument(), nullptr);
    EXPECT_EXIT(
        {
            other->SetStandalone(true);
            start(*other);
        },
        testing::ExitedWithCode(255), notLoaded);
}

TEST(ZAppTest, PassesMessagesToTheirManagers)
{
    const TestResources resources(kWhole);
    const auto app = makePlugin(resources);
    start(*app);
    WindowRecorder& windows = addWindows(*app);
    for (const std::int32_t id : {ZSHOWDIALOG, ZSHOWSYSDIALOG, ZWINDOWCLOSED})
        app->HandleZMessage(boost::make_shared<ZMessage>(id));
    EXPECT_EQ(windows.Ids(), (std::vector<std::int32_t>{ZSHOWDIALOG, ZSHOWSYSDIALOG}));
    app->HandleZMessage(messageWith<ZString>(ZDOCUMENTNEW, "filename", "Plain"));
    EXPECT_EQ(app->GetDocumentManager()->GetDocumentCount(), 2)
        << "a closed window does not end it";
}

TEST(ZAppTest, DoesNotQuitWhileADocumentStaysOpen)
{
    struct Stubborn : ZDocument
    {
        using ZDocument::ZDocument;
        bool AgreesToClose() override { return agrees; }
        bool agrees = false;
    };
    const TestResources resources(kCommandList + documentsOf("StubbornClass") + kStartup);
    const auto app = makePlugin(resources);
    app->GetClassRegistry().AddStandard<Stubborn>("StubbornClass");
    start(*app);
    const auto quit = messageWith<std::int32_t>(ZQUIT, "QuitInt", 3);
    app->HandleZMessage(quit);
    ASSERT_NE(app->GetCurrentDocument(), nullptr);
    EXPECT_EQ(app->GetQuitCode(), 0);
    boost::dynamic_pointer_cast<Stubborn>(app->GetCurrentDocument())->agrees = true;
    app->HandleZMessage(quit);
    EXPECT_EQ(app->GetCurrentDocument(), nullptr);
    EXPECT_EQ(app->GetQuitCode(), 3);
}

TEST(ZAppTest, ApplicationsCanBeDestroyedInAnyOrder)
{
    const TestResources resources(kWhole);
    auto first = makePlugin(resources);
    auto second = makePlugin(resources);
    start(*first);
    start(*second);
    ZHandler loose;
    EXPECT_EQ(loose.GetApp(), second.get());
    const auto document = first->GetCurrentDocument();
    EXPECT_EQ(document->GetApp(), first.get());
    first.reset();
    EXPECT_EQ(document->GetLooper(), nullptr) << "a document may outlive its application";
    EXPECT_EQ(loose.GetApp(), second.get());
    second.reset();
    EXPECT_EQ(loose.GetApp(), nullptr);
}

TEST(ZAppTest, OpensWebAddressesOnlyThroughTheDesktop)
{
    const PrivateFolder folder;
    folder.Install("xdg-open", "printf '%s' \"$1\" >'" + folder.Path("part") + "'\nmv '" +
                                   folder.Path("part") + "' '" + folder.Path("opened") + "'");
    const EnvironmentVariable path("PATH", (folder.Path() + ":" + std::getenv("PATH")).c_str());
    const TestResources resources("");
    const auto app = makePlugin(resources);
    app->HandleZMessage(messageWith<ZString>(ZGOTOURL, "URL", "file:///etc/passwd"));
    app->HandleZMessage(messageWith<ZString>(ZGOTOURL, "URL", "https://orvane.example/$(id)?a=b"));
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(folder.Path("opened")); }));
    EXPECT_EQ(readTextFile(folder.Path("opened")), "https://orvane.example/$(id)?a=b");

    EXPECT_TRUE(ZBrowserLaunch::IsWebAddress("HTTPS://A"));
    for (const char* address : {"http://", "https:/a", "-h", "http://a b", "http://a\n", "ftp://a"})
        EXPECT_FALSE(ZBrowserLaunch::IsWebAddress(address)) << address;
}

TEST_F(ZPluginTest, ExposedLeavesWithAValueAreTheParametersInTreeOrder)
{
    ASSERT_EQ(app->GetExposedCount(), 2);
    const auto level = document->FindElement("level");
    EXPECT_EQ(app->GetExposedElement(0), level);
    EXPECT_EQ(app->GetExposedLabel(0).ToNarrow(), "The Level");
    EXPECT_EQ(app->GetExposedLabel(1).ToNarrow(), "choice");
    EXPECT_EQ(app->GetExposedElement(2), nullptr);
    EXPECT_EQ(level->GetObserverCount(), 1);
    app.reset();
    EXPECT_EQ(level->GetObserverCount(), 0) << "elements may outlive their plug-in";
}

TEST_F(ZPluginTest, ReadsAndSetsValuesByTypeWithoutAllocating)
{
    const auto level = document->FindElement("level");
    const auto choice = document->FindElement("choice");
    const auto place = document->FindElement("place");
    const RealtimeGuard guard;
    app->SetExposedValue(*level, 0.75f);
    app->SetExposedValue(*choice, 1.9f);
    app->SetExposedValue(*place, 1.0f);
    const std::array values{app->GetExposedValue(*level), app->GetExposedValue(*choice),
                            app->GetExposedValue(*place)};
    EXPECT_EQ(guard.violations(), 0u);
    EXPECT_EQ(values, (std::array{0.75f, 1.0f, 0.0f}));
    EXPECT_TRUE(level->IsMarkedChanged());
}

TEST_F(ZPluginTest, LoadsTheLabelFontFromTheDataFolders)
{
    const PrivateFolder user;
    const PrivateFolder system;
    const EnvironmentVariable home("XDG_DATA_HOME", user.Path().c_str());
    const EnvironmentVariable dirs("XDG_DATA_DIRS", ("relative:" + system.Path()).c_str());
    app->InitLooper();
    EXPECT_TRUE(app->GetFonts().empty());
    for (const PrivateFolder* folder : {&system, &user}) {
        const std::string font = folder->Path("Orvane/Kolm 5pt.ttf");
        std::filesystem::create_directory(folder->Path("Orvane"));
        writeTextFile(font, "font");
        app->InitLooper();
        EXPECT_EQ(app->GetFonts().back(), font);
    }
}
