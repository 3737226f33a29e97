// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/DeferredDelete.h"

#include "pluginwrappers/common/ZVSTPlugin.h"
#include "support/Eventually.h"
#include "support/SmallPlugin.h"
#include "support/TestHost.h"

#include <boost/smart_ptr/weak_ptr.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace orvane
{

namespace
{

class DeferredDeleteTest : public testing::Test
{
protected:
    /// Opens an effect with one parameter, which ticks.
    AEffect* Open()
    {
        auto made = SmallPlugin::Make();
        app = made.get();
        document = made->Document();
        const ZInterfaceLock lock;
        app->Gain()->SetExposed(true);
        app->AddExposedElement(app->Gain());
        app->Tick();
        auto* const plugin = new ZVSTPlugin(TestHost::callback, std::move(made));
        plugin->SetWantsMidi(true);
        app->InitLooper();
        return plugin->getAeffect();
    }
    /// Opens an effect, closes it inside its next call of the host with that opcode, which cause
    /// brings about, and expects its deletion after that call.
    void CloseInside(std::int32_t opcode, const std::function<void(AEffect*)>& cause)
    {
        SCOPED_TRACE(opcode);
        const TestHost host;
        std::atomic<bool> isClosed{false};
        std::atomic<bool> livedInside{false};
        std::atomic<int> callsAfter{0};
        TestHost::On(TestHost::kEveryCall, [&](AEffect*) { callsAfter += isClosed ? 1 : 0; });
        TestHost::On(opcode, [&](AEffect* effect) {
            if (isClosed.exchange(true))
                return;
            ask(effect, effClose);
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            livedInside = !document.expired();
        });
        cause(Open());
        EXPECT_TRUE(eventually([&] { return isClosed && document.expired(); }));
        EXPECT_TRUE(livedInside);
        EXPECT_EQ(callsAfter, 0);
    }

    SmallPlugin* app = nullptr;
    boost::weak_ptr<SmallDocument> document;
};

}  // namespace

TEST_F(DeferredDeleteTest, AnEffectClosedInsideItsOwnCallIsDeletedAfterThatCall)
{
    CloseInside(audioMasterAutomate, [&](AEffect*) { app->Gain()->SetZFloat(0.5f, false); });
    CloseInside(audioMasterBeginEdit, [&](AEffect*) {
        const ZInterfaceLock lock;  // as around each event of the window
        app->BeginEdit(app->Gain().get());
        app->EndEdit(app->Gain().get());
    });
    CloseInside(audioMasterIOChanged,
                [](AEffect* effect) { ask(effect, effSetSampleRate, 0, 0, nullptr, 48e3f); });
    CloseInside(audioMasterWantMidi, [](AEffect* effect) { ask(effect, effMainsChanged, 0, 1); });
    CloseInside(audioMasterWantMidi, [](AEffect* effect) {
        std::thread([effect] { ask(effect, effMainsChanged, 0, 1); }).join();
    });
}

TEST_F(DeferredDeleteTest, AHostMayCloseOnTheThreadThatItsCallWaitsFor)
{
    const TestHost host;
    std::atomic<bool> isCalled{false};
    std::atomic<bool> isAnswered{false};
    std::atomic<bool> livedInside{false};
    TestHost::On(audioMasterAutomate, [&](AEffect*) {
        isCalled = true;
        livedInside = eventually([&] { return isAnswered.load(); }) && !document.expired();
    });
    AEffect* const effect = Open();
    app->Gain()->SetZFloat(0.5f, false);
    ASSERT_TRUE(eventually([&] { return isCalled.load(); }));
    ask(effect, effClose);
    isAnswered = true;
    EXPECT_TRUE(eventually([&] { return document.expired(); }));
    EXPECT_TRUE(livedInside);
}

}  // namespace orvane
