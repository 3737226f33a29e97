// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZVSTPlugin.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "support/Eventually.h"
#include "support/SmallPlugin.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace orvane
{

using namespace std::chrono_literals;

namespace
{

struct ToldHost
{
    std::int32_t opcode;
    float value;
    std::thread::id thread;
};

std::mutex gMutex;
std::vector<ToldHost> gTold;
std::atomic<std::int32_t> gProcessLevel{0};
std::function<void(AEffect*)> gInsideAutomate;

std::intptr_t callback(AEffect* effect, std::int32_t opcode, std::int32_t /*index*/,
                       std::intptr_t /*value*/, void* /*ptr*/, float opt)
{
    if (opcode == audioMasterGetCurrentProcessLevel)
        return gProcessLevel;
    if (opcode == audioMasterAutomate || opcode == audioMasterBeginEdit ||
        opcode == audioMasterEndEdit) {
        const std::lock_guard guard(gMutex);
        gTold.push_back({opcode, opt, std::this_thread::get_id()});
    }
    if (opcode == audioMasterAutomate && gInsideAutomate)
        gInsideAutomate(effect);
    return 0;
}

std::vector<ToldHost> told()
{
    const std::lock_guard guard(gMutex);
    return gTold;
}

/// One parameter, the gain, from -1 to 1.
class AutomationTest : public testing::Test
{
protected:
    AutomationTest()
    {
        gTold.clear();
        gProcessLevel = 0;
        gInsideAutomate = nullptr;
        auto made = SmallPlugin::Make();
        app = made.get();
        gain = app->Gain();
        gain->SetExposed(true);
        const ZInterfaceLock lock;
        app->AddExposedElement(gain);
        app->Tick();
        plugin = std::make_unique<ZVSTPlugin>(callback, std::move(made));
        app->InitLooper();
    }

    static bool AreTold(std::size_t count)
    {
        return eventually([count] { return told().size() >= count; });
    }

    SmallPlugin* app = nullptr;
    boost::shared_ptr<ZElement> gain;
    std::unique_ptr<ZVSTPlugin> plugin;
};

}  // namespace

TEST_F(AutomationTest, AUsersChangeIsToldOnceATickAndTheHostThatIsToldReadsItAndSetsNone)
{
    std::atomic<float> read{-1.0f};
    gInsideAutomate = [&](AEffect* effect) {
        effect->setParameter(effect, 0, 0.0f);
        read = effect->getParameter(effect, 0);
    };
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
        // What waits for the tick is told before a gesture ends, and no more at the tick.
        const ZInterfaceLock lock;
        gain->SetZFloat(-0.5f, false);
        app->EndEdit(gain.get());
        app->Tick();
    }
    std::vector<std::int32_t> opcodes;
    for (const ToldHost& call : told())
        opcodes.push_back(call.opcode);
    EXPECT_EQ(opcodes, (std::vector<std::int32_t>{audioMasterBeginEdit, audioMasterAutomate,
                                                  audioMasterAutomate, audioMasterEndEdit}));
    EXPECT_FLOAT_EQ(told()[2].value, 0.25f);
}

TEST_F(AutomationTest, ATickOfTheStreamLeavesTheTellingToTheInterfaceThread)
{
    gProcessLevel = kVstProcessLevelOffline;
    AEffect* const effect = plugin->getAeffect();
    effect->dispatcher(effect, effSetBlockSize, 0, 4410, nullptr, 0.0f);
    gain->SetZFloat(-0.5f, false);
    std::vector<float> channel(4410);
    float* channels[] = {channel.data(), channel.data()};
    effect->processReplacing(effect, channels, channels, 4410);
    ASSERT_TRUE(AreTold(1));
    EXPECT_NE(told().front().thread, std::this_thread::get_id());
    EXPECT_FLOAT_EQ(told().front().value, 0.25f);
}

TEST_F(AutomationTest, ClosingWaitsForACallOfTheHostThatIsNotYetBack)
{
    std::atomic<bool> back{false};
    gInsideAutomate = [&](AEffect*) {
        std::this_thread::sleep_for(100ms);
        back = true;
    };
    gain->SetZFloat(0.5f, false);
    ASSERT_TRUE(AreTold(1));
    plugin.reset();
    EXPECT_TRUE(back);
}

}  // namespace orvane
