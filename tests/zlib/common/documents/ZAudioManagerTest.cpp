// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/BoxRecorder.h"
#include "support/SmallPlugin.h"
#include "support/Test.h"
#include "zlib/common/documents/DocumentFixture.h"
#include "zlib/common/documents/ZPluginAudioManager.h"
#include "zlib/common/elements/ZAudioFormatElement.h"
#include "zlib/common/signals/ZInputBay.h"
#include "zlib/common/signals/ZOutputBay.h"
#include "zlib/common/signals/ZSignalLooper.h"
#include "zlib/common/signals/ZSilentDriver.h"

using namespace orvane;

namespace
{

/// A manager without a driver: the maker returns null for model 0 and throws for others.
struct FailingManager : ZAudioManager
{
    using ZAudioManager::ZAudioManager;
    void BuildDriverModel(const ZDriverSettings& settings) override
    {
        Build([&]() -> boost::shared_ptr<ZSignalDriver> {
            if (settings.model != 0)
                throw std::runtime_error("no such thing");
            return nullptr;
        });
    }
};

boost::shared_ptr<const ZMessage> changedTo(const boost::shared_ptr<ZDocument>& document)
{
    return messageWith<boost::shared_ptr<ZDocument>>(ZDOCUMENTCHANGED, "NewDocument", document);
}

boost::shared_ptr<ZAudioDocument> currentDocument(const ZApp& app)
{
    return boost::dynamic_pointer_cast<ZAudioDocument>(app.GetCurrentDocument());
}

}  // namespace

TEST(ZAudioManagerTest, RunsASilentDriverWhereNoneCanBeMade)
{
    const auto app = SmallPlugin::Make();
    const auto document = currentDocument(*app);
    for (const std::int32_t model : {0, 1}) {
        BoxRecorder recorder;
        FailingManager manager(xmlOf("<audiomanager></audiomanager>"), app.get());
        ZDriverSettings settings;
        settings.model = model;
        manager.BuildDriverModel(settings);
        ASSERT_EQ(recorder.boxes.size(), 1u);
        EXPECT_EQ(recorder.boxes[0].text, "Cannot Find Sound Device.");
        const auto looper = manager.GetSignalLooper();
        ASSERT_NE(looper, nullptr);
        EXPECT_NE(boost::dynamic_pointer_cast<ZSilentDriver>(looper->GetDriver()), nullptr);
        EXPECT_TRUE(looper->IsRunning());
        manager.AttachDocument(document);
        EXPECT_TRUE(looper->GetOutputBay()->IsRouted(1, *document->GetOutputNetwork(), 1));
        EXPECT_TRUE(looper->IsRunning());
    }
}

TEST(ZAudioManagerTest, RunsTheSilentDriverByNameAndRoutesTheInputOfItsDocument)
{
    const auto app = SmallPlugin::Make();
    const BoxRecorder recorder;
    ZAudioManager manager(
        xmlOf("<audiomanager><drivermodel name=\"None\" /><drivermodel name=\"Silent\" />"
              "</audiomanager>"),
        app.get());
    ZDriverSettings settings;
    settings.model = 1;
    manager.BuildDriverModel(settings);
    EXPECT_TRUE(recorder.boxes.empty());
    const auto looper = manager.GetSignalLooper();
    manager.Start();
    EXPECT_TRUE(looper->IsRunning());
    manager.Stop();
    EXPECT_FALSE(looper->IsRunning());
    const auto document = boost::make_shared<ZAudioDocument>(
        xmlOf("<doctype><networks><network type=\"input\"><bay name=\"in\" "
              "class=\"GainBayClass\" numchannels=\"2\" /></network></networks></doctype>"),
        app.get());
    manager.AttachDocument(document);
    EXPECT_TRUE(document->GetInputNetwork()->IsRouted(1, *looper->GetInputBay(), 1));
}

TEST(ZAudioManagerTest, RoutesTheOutputOfTheCurrentDocumentOfItsType)
{
    const auto app = SmallPlugin::Make();
    const auto looper = app->GetAudioManager()->GetSignalLooper();
    const auto network = currentDocument(*app)->GetOutputNetwork();
    for (std::int32_t channel = 0; channel < 2; ++channel) {
        EXPECT_TRUE(looper->GetOutputBay()->IsRouted(channel, *network, channel));
        EXPECT_FALSE(network->IsRouted(channel, *looper->GetInputBay(), channel))
            << "the host shell routes the input";
    }

    ZPluginAudioManager stranger(
        xmlOf("<audiomanager><docchange mode=\"change\"><doctype name=\"Other\" /></docchange>"
              "</audiomanager>"),
        app.get());
    stranger.BuildDriverModel({});
    stranger.HandleZMessage(changedTo(app->GetCurrentDocument()));
    EXPECT_EQ(network->GetRouteCount(), 2) << "a document of another type is not attached";
    looper->SetSampleRate(96000.0f);  // the host's
    app->GetAudioManager()->HandleZMessage(changedTo(app->GetCurrentDocument()));
    EXPECT_EQ(looper->GetSampleRate(), 96000.0f) << "the same document";
    EXPECT_EQ(network->GetRouteCount(), 2);
    app->GetDocumentManager()->NewDocument(app->GetDocumentManager()->GetTypes().front());
    EXPECT_EQ(network->GetRouteCount(), 0) << "another document";
    EXPECT_EQ(currentDocument(*app)->GetOutputNetwork()->GetRouteCount(), 2);
}
