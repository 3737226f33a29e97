// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZVSTPlugin.h"
#include "support/Eventually.h"
#include "support/SmallPlugin.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace orvane
{

namespace
{

/// A plug-in with one parameter, the gain, from -1 to 1.
class AutomationTest : public testing::Test
{
protected:
    AutomationTest()
    {
        auto made = SmallPlugin::Make();
        app = made.get();
        gain = app->Gain();
        gain->SetExposed(true);
        const ZInterfaceLock lock;
        app->AddExposedElement(gain);
        app->Tick();
        plugin = std::make_unique<ZVSTPlugin>(TestHost::callback, std::move(made));
        app->InitLooper();
    }

    static bool HostIsNotified()
    {
        return eventually([] { return TestHost::CountOf(audioMasterAutomate) > 0; });
    }

    const TestHost host;
    SmallPlugin* app = nullptr;
    boost::shared_ptr<ZElement> gain;
    std::unique_ptr<ZVSTPlugin> plugin;
};

}  // namespace

TEST_F(AutomationTest, AChangeIsSentOncePerTickAndTheHostReadsItButCannotSetParametersMeanwhile)
{
    std::atomic<float> read{-1.0f};
    TestHost::On(audioMasterAutomate, [&](AEffect* effect) {
        effect->setParameter(effect, 0, 0.0f);
        read = effect->getParameter(effect, 0);
    });
    {
        const ZInterfaceLock lock;
        app->BeginEdit(gain.get());
        for (const float value : {0.1f, 0.2f, 0.5f})
            gain->SetZFloat(value, false);
    }
    ASSERT_TRUE(eventually([&] { return read != -1.0f; }));
    EXPECT_FLOAT_EQ(read, 0.75f);
    EXPECT_EQ(gain->GetZFloat(), 0.5f);
    {
        // A pending change is sent before the end of its gesture, and not again at the tick.
        const ZInterfaceLock lock;
        gain->SetZFloat(-0.5f, false);
        app->EndEdit(gain.get());
        app->Tick();
    }
    EXPECT_EQ(TestHost::TakeNotes(),
              (std::vector<std::string>{"begin 0", "0=750", "0=250", "end 0"}));
}

TEST_F(AutomationTest, ATickOfTheStreamLeavesTheNotificationToTheInterfaceThread)
{
    TestHost::SetOffline(true);
    AEffect* const effect = plugin->getAeffect();
    ask(effect, effSetBlockSize, 0, 4410);
    gain->SetZFloat(-0.5f, false);
    std::vector<float> channel(4410);
    float* channels[] = {channel.data(), channel.data()};
    effect->processReplacing(effect, channels, channels, 4410);
    ASSERT_TRUE(HostIsNotified());
    const HostCall call = TestHost::Calls().front();
    EXPECT_NE(call.thread, std::this_thread::get_id());
    EXPECT_FLOAT_EQ(call.opt, 0.25f);
}

TEST_F(AutomationTest, ClosingWaitsForACallOfTheHostInProgress)
{
    std::atomic<bool> back{false};
    TestHost::On(audioMasterAutomate, [&](AEffect*) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        back = true;
    });
    gain->SetZFloat(0.5f, false);
    ASSERT_TRUE(HostIsNotified());
    plugin.reset();
    EXPECT_TRUE(back);
}

}  // namespace orvane
