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

using namespace std::chrono_literals;

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
    if (gIsClosed)
        ++gCallsAfter;
    if (opcode == gClosesInside && !gIsClosed.exchange(true)) {
        ask(effect, effClose, 0);
        std::this_thread::sleep_for(10ms);
        gStoodInside = !gDocument.expired();
    }
    return 0;
}

}  // namespace

TEST(LateClosingTest, AnEffectThatIsClosedFromInsideItsOwnCallGoesOnceThatCallIsBack)
{
    struct Case
    {
        std::int32_t call;
        void (*raise)(SmallPlugin& app, AEffect* effect);
    };
    const Case cases[] = {
        {audioMasterAutomate,
         [](SmallPlugin& app, AEffect*) { app.Gain()->SetZFloat(0.5f, false); }},
        {audioMasterBeginEdit,
         [](SmallPlugin& app, AEffect*) {
             const ZInterfaceLock lock;  // as around each event of the window
             app.BeginEdit(app.Gain().get());
             app.EndEdit(app.Gain().get());
         }},
        {audioMasterIOChanged,
         [](SmallPlugin&, AEffect* effect) { ask(effect, effSetSampleRate, 0, 48e3f); }},
        {audioMasterWantMidi,
         [](SmallPlugin&, AEffect* effect) { ask(effect, effMainsChanged, 1); }},
        {audioMasterWantMidi,
         [](SmallPlugin&, AEffect* effect) {
             std::thread(ask, effect, effMainsChanged, 1, 0.0f).join();
         }},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.call);
        gClosesInside = each.call;
        gIsClosed = gStoodInside = false;
        gCallsAfter = 0;
        auto made = SmallPlugin::Make();
        SmallPlugin& app = *made;
        gDocument = app.Document();
        AEffect* effect = nullptr;
        {
            const ZInterfaceLock lock;
            app.Gain()->SetExposed(true);
            app.AddExposedElement(app.Gain());
            app.Tick();
            auto* const plugin = new ZVSTPlugin(closingHost, std::move(made));
            plugin->SetWantsMidi(true);
            app.InitLooper();
            effect = plugin->getAeffect();
        }
        each.raise(app, effect);
        EXPECT_TRUE(eventually([] { return gIsClosed && gDocument.expired(); }));
        EXPECT_TRUE(gStoodInside);
        EXPECT_EQ(gCallsAfter, 0);
    }
}

}  // namespace orvane
