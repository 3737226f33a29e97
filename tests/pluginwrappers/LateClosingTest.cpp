#include "pluginwrappers/common/LateClosing.h"

#include "pluginwrappers/common/VstOpcodes.h"
#include "pluginwrappers/common/ZVSTPlugin.h"

#include "support/Eventually.h"
#include "support/SmallPlugin.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include <boost/smart_ptr/weak_ptr.hpp>

namespace orvane
{

namespace
{

std::int32_t gClosesInside;  // the call in which the host closes
boost::weak_ptr<SmallDocument> gDocument;
std::atomic<bool> gIsClosed;
std::atomic<bool> gStoodInside;
std::atomic<int> gCallsAfter;

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

void userGesture(SmallPlugin& app, AEffect* /*effect*/)
{
    const ZInterfaceLock lock;  // as around each event of the window
    app.BeginEdit(app.Gain().get());
    app.EndEdit(app.Gain().get());
}

class LateClosingTest : public testing::Test
{
protected:
    /// Opens an effect whose host closes inside a call, which the function brings about.
    static void CloseInside(std::int32_t call, void (*raise)(SmallPlugin& app, AEffect* effect))
    {
        gClosesInside = call;
        gIsClosed = gStoodInside = false;
        gCallsAfter = 0;
        auto made = SmallPlugin::Make();
        SmallPlugin& app = *made;
        gDocument = app.Document();
        ZVSTPlugin* plugin = nullptr;
        {
            const ZInterfaceLock lock;
            app.Gain()->SetExposed(true);
            app.AddExposedElement(app.Gain());
            app.Tick();
            plugin = new ZVSTPlugin(closingHost, std::move(made));
            plugin->SetWantsMidi(true);
            app.InitLooper();
        }
        raise(app, plugin->getAeffect());
        EXPECT_TRUE(eventually([] { return gIsClosed && gDocument.expired(); }));
        EXPECT_TRUE(gStoodInside) << call;
        EXPECT_EQ(gCallsAfter, 0) << call;
    }
};

}  // namespace

TEST_F(LateClosingTest, AnEffectThatIsClosedFromInsideItsOwnCallGoesOnceThatCallIsBack)
{
    CloseInside(audioMasterAutomate,
                [](SmallPlugin& app, AEffect*) { app.Gain()->SetZFloat(0.5f, false); });
    CloseInside(audioMasterBeginEdit, userGesture);
    CloseInside(audioMasterIOChanged,
                [](SmallPlugin&, AEffect* effect) { ask(effect, effSetSampleRate, 0, 48e3f); });
    CloseInside(audioMasterWantMidi,
                [](SmallPlugin&, AEffect* effect) { ask(effect, effMainsChanged, 1); });
    CloseInside(audioMasterWantMidi, [](SmallPlugin&, AEffect* effect) {
        std::thread(ask, effect, effMainsChanged, 1, 0.0f).join();
    });
}

}  // namespace orvane
