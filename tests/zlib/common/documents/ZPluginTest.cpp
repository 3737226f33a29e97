// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZPlugin.h"

#include "support/PrivateFolder.h"
#include "support/RealtimeGuard.h"
#include "zlib/common/documents/DocumentFixture.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZDocumentManager.h"

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

const char* const kDescription =
    "<commandlist><command name=\"cmdNew\" target=\"doc\"><message id=\"ZFILENEW\">"
    "<ZString name=\"filename\" value=\"Plain\" /></message></command></commandlist>\n"
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
    "</elements></doctype></documenttypes></documentmanager>\n"
    "<startup><startupitem command=\"cmdNew\" /></startup>\n";

class ZPluginTest : public testing::Test
{
protected:
    ZPluginTest()
    {
        start(*app);
        document = app->GetCurrentDocument();
        app->ExposeElements(*document);
    }

    const TestResources resources{kDescription};
    std::unique_ptr<ZPlugin> app = makePlugin(resources);
    boost::shared_ptr<ZDocument> document;
};

}  // namespace

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
    const float values[] = {app->GetExposedValue(*level), app->GetExposedValue(*choice),
                            app->GetExposedValue(*place)};
    EXPECT_EQ(guard.violations(), 0u);
    EXPECT_EQ(values[0], 0.75f);
    EXPECT_EQ(values[1], 1.0f);
    EXPECT_EQ(values[2], 0.0f);
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

}  // namespace orvane
