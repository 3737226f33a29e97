#include "zlib/common/ZPlugin.h"

#include "support/PrivateFolder.h"
#include "support/RealtimeGuard.h"
#include "zlib/DocumentFixture.h"
#include "zlib/common/ZDocument.h"
#include "zlib/common/ZDocumentManager.h"
#include "zlib/common/ZInterfaceLock.h"
#include "zlib/common/ZSetParameterFn.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

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

/// Stands for the host: keeps what it is told as a line of text.
class HostRecorder : public ZSetParameterFn
{
public:
    void SetParameter(const boost::shared_ptr<ZElement>& element, std::int32_t index) override
    {
        const std::lock_guard lock(mMutex);
        mLog += element->GetName() + "=" + std::to_string(index) + " ";
        mTold.notify_all();
    }
    void BeginEdit(std::int32_t index) override { mLog += "begin" + std::to_string(index) + " "; }
    void EndEdit(std::int32_t index) override { mLog += "end" + std::to_string(index) + " "; }

    std::string TakeLog() { return std::exchange(mLog, {}); }
    /// Waits for the first word, some ticks at most.
    std::string WaitForLog()
    {
        std::unique_lock lock(mMutex);
        mTold.wait_for(lock, std::chrono::seconds(5), [&] { return !mLog.empty(); });
        return std::exchange(mLog, {});
    }

private:
    std::mutex mMutex;
    std::condition_variable mTold;
    std::string mLog;
};

class ZPluginTest : public testing::Test
{
protected:
    ZPluginTest()
    {
        start(*app);
        app->ExposeElements(*app->GetCurrentDocument());
        app->SetParameterFn(host);
        app->ProcessQueue();
    }
    [[nodiscard]] boost::shared_ptr<ZElement> Find(const char* name) const
    {
        return app->GetCurrentDocument()->FindElement(name);
    }

    const TestResources resources{kDescription};
    const std::unique_ptr<ZPlugin> app = makePlugin(resources);
    const boost::shared_ptr<HostRecorder> host = boost::make_shared<HostRecorder>();
};

}  // namespace

TEST_F(ZPluginTest, ExposedLeavesWithAValueAreTheParametersInTreeOrder)
{
    ASSERT_EQ(app->GetExposedCount(), 2);
    EXPECT_EQ(app->GetExposedElement(0), Find("level"));
    EXPECT_EQ(app->GetExposedLabel(0).ToNarrow(), "The Level");
    EXPECT_EQ(app->GetExposedElement(1), Find("choice"));
    EXPECT_EQ(app->GetExposedLabel(1).ToNarrow(), "choice");
    for (const std::int32_t index : {-1, 2}) {
        EXPECT_EQ(app->GetExposedElement(index), nullptr);
        EXPECT_TRUE(app->GetExposedLabel(index).IsEmpty());
    }
}

TEST_F(ZPluginTest, AChangeGoesOutToTheHostAtTheTickAndTheHostsOwnDoesNot)
{
    Find("choice")->SetDiscrete(1, false);
    Find("hidden")->SetZFloat(1.0f, false);
    app->ProcessQueue();
    EXPECT_EQ(host->TakeLog(), "");
    app->Tick();
    EXPECT_EQ(host->TakeLog(), "choice=1 ");
    Find("level")->SetZFloat(1.5f, true);
    Find("level")->MarkChangedByHost();
    app->Tick();
    EXPECT_EQ(host->TakeLog(), "");
    app->SetParameterFn(nullptr);
    Find("choice")->SetDiscrete(0, false);
    app->Tick();
}

TEST_F(ZPluginTest, TheLastChangeOfAGestureReachesTheHostOnceAndBeforeItsEnd)
{
    app->BeginEdit(Find("choice").get());
    app->BeginEdit(Find("hidden").get());
    app->BeginEdit(nullptr);
    Find("choice")->SetDiscrete(1, false);
    app->EndEdit(Find("choice").get());
    app->Tick();
    EXPECT_EQ(host->TakeLog(), "begin1 choice=1 end1 ");

    app->BeginEdit(Find("level").get());
    Find("level")->MarkChangedByHost();
    app->EndEdit(Find("level").get());
    EXPECT_EQ(host->TakeLog(), "begin0 end0 ") << "what the host has set itself is not told";
}

TEST_F(ZPluginTest, ValuesAreReadAndSetByTypeAsTheUsersChangesAlsoOnTheAudioThread)
{
    const auto level = Find("level");
    const auto choice = Find("choice");
    const auto place = Find("place");
    const RealtimeGuard guard;
    const bool same = app->GetExposedElement(app->GetExposedCount() - 1) == choice;
    app->SetExposedValue(*level, 0.75f);
    app->SetExposedValue(*choice, 1.9f);
    app->SetExposedValue(*place, 1.0f);
    const float values[] = {app->GetExposedValue(*level), app->GetExposedValue(*choice),
                            app->GetExposedValue(*place)};
    EXPECT_EQ(guard.violations(), 0u);
    EXPECT_TRUE(same);
    EXPECT_EQ(values[0], 0.75f);
    EXPECT_EQ(values[1], 1.0f);
    EXPECT_EQ(values[2], 0.0f);
    app->Tick();
    EXPECT_EQ(host->TakeLog(), "level=0 choice=1 ");
}

TEST_F(ZPluginTest, TheInterfaceThreadTicksAndElementsOutliveAnEndWhileItDoes)
{
    auto other = makePlugin(resources);
    start(*other);
    {
        const ZInterfaceLock lock;
        other->ExposeElements(*other->GetCurrentDocument());
        other->SetParameterFn(host);
        other->InitLooper();
    }
    const auto document = other->GetCurrentDocument();
    const auto level = other->GetExposedElement(0);
    level->SetZFloat(0.25f, false);
    EXPECT_EQ(host->WaitForLog(), "level=0 ");
    level->SetZFloat(0.5f, false);
    const ZInterfaceLock lock;  // as the host shell holds it
    other.reset();
    EXPECT_EQ(level->GetObserverCount(), 0);
}

TEST_F(ZPluginTest, TheLabelFontIsFoundInTheUsersData)
{
    EXPECT_TRUE(app->GetFonts().empty());
    app->LoadFont("/nowhere/at all.ttf");
    EXPECT_TRUE(app->GetFonts().empty());
    const PrivateFolder folder;
    const EnvironmentVariable home("XDG_DATA_HOME", folder.Path().c_str());
    const std::string font = folder.Path("Orvane/Kolm 5pt.ttf");
    std::filesystem::create_directory(folder.Path("Orvane"));
    writeTextFile(font, "font");
    app->InitLooper();
    EXPECT_EQ(app->GetFonts(), std::vector<std::string>{font});
}

}  // namespace orvane
