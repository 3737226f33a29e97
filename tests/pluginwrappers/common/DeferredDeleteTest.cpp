// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/DeferredDelete.h"

#include "pluginwrappers/common/ZVSTPlugin.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "support/Eventually.h"
#include "support/SmallPlugin.h"

#include <boost/smart_ptr/weak_ptr.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace orvane
{

namespace
{

std::int32_t gClosesInside;  // the call in which the host closes
SmallPlugin* gApp;
boost::weak_ptr<SmallDocument> gDocument;
std::atomic<bool> gIsClosed;
std::atomic<bool> gStoodInside;
std::atomic<int> gCallsAfter;
std::atomic<bool> gIsAnswered;  // what the host's main thread does once it is back

void ask(AEffect* effect, std::int32_t opcode, std::intptr_t value, float opt = 0.0f)
{
    effect->dispatcher(effect, opcode, 0, value, nullptr, opt);
}

std::intptr_t closingHost(AEffect* effect, std::int32_t opcode, std::int32_t /*index*/,
                          std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    gCallsAfter += gIsClosed ? 1 : 0;
    if (opcode == gClosesInside && !gIsClosed.exchange(true)) {
        ask(effect, effClose, 0);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        gStoodInside = !gDocument.expired();
    }
    return 0;
}

std::intptr_t queueingHost(AEffect* /*effect*/, std::int32_t opcode, std::int32_t /*index*/,
                           std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    if (opcode == audioMasterAutomate) {
        gIsClosed = true;  // as good as: the main thread is about to
        gStoodInside = eventually([] { return gIsAnswered.load(); }) && !gDocument.expired();
    }
    return 0;
}

class DeferredDeleteTest : public testing::Test
{
protected:
    /// A ticking effect with one parameter.
    static AEffect* Open(audioMasterCallback host)
    {
        gIsClosed = gStoodInside = gIsAnswered = false;
        gCallsAfter = 0;
        auto made = SmallPlugin::Make();
        gApp = made.get();
        gDocument = made->Document();
        const ZInterfaceLock lock;
        gApp->Gain()->SetExposed(true);
        gApp->AddExposedElement(gApp->Gain());
        gApp->Tick();
        auto* const plugin = new ZVSTPlugin(host, std::move(made));
        plugin->SetWantsMidi(true);
        gApp->InitLooper();
        return plugin->getAeffect();
    }
    /// Opens an effect whose host closes inside a call, which the function brings about.
    static void CloseInside(std::int32_t call, void (*raise)(AEffect* effect))
    {
        gClosesInside = call;
        raise(Open(closingHost));
        EXPECT_TRUE(eventually([] { return gIsClosed && gDocument.expired(); }));
        EXPECT_TRUE(gStoodInside) << call;
        EXPECT_EQ(gCallsAfter, 0) << call;
    }
};

}  // namespace

TEST_F(DeferredDeleteTest, AnEffectThatIsClosedFromInsideItsOwnCallGoesOnceThatCallIsBack)
{
    CloseInside(audioMasterAutomate, [](AEffect*) { gApp->Gain()->SetZFloat(0.5f, false); });
    CloseInside(audioMasterBeginEdit, [](AEffect*) {
        const ZInterfaceLock lock;  // as around each event of the window
        gApp->BeginEdit(gApp->Gain().get());
        gApp->EndEdit(gApp->Gain().get());
    });
    CloseInside(audioMasterIOChanged,
                [](AEffect* effect) { ask(effect, effSetSampleRate, 0, 48e3f); });
    CloseInside(audioMasterWantMidi, [](AEffect* effect) { ask(effect, effMainsChanged, 1); });
    CloseInside(audioMasterWantMidi,
                [](AEffect* effect) { std::thread(ask, effect, effMainsChanged, 1, 0.0f).join(); });
}

TEST_F(DeferredDeleteTest, AHostMayCloseOnTheThreadThatIsToAnswerACall)
{
    AEffect* const effect = Open(queueingHost);
    gApp->Gain()->SetZFloat(0.5f, false);
    ASSERT_TRUE(eventually([] { return gIsClosed.load(); }));
    ask(effect, effClose, 0);
    gIsAnswered = true;
    EXPECT_TRUE(eventually([] { return gDocument.expired(); }));
    EXPECT_TRUE(gStoodInside);
}

}  // namespace orvane
