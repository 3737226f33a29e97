// SPDX-License-Identifier: GPL-3.0-or-later
// How the host learns that saved state which is no parameter has changed.
#include "pluginwrappers/common/ProductInstance.h"
#include "support/Eventually.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace orvane
{

namespace
{

using namespace std::chrono_literals;

std::atomic<int> gNotices{0};
std::atomic<int> gNoticesElsewhere{0};  // on the thread of the test

std::thread::id gTestThread;

std::intptr_t callback(AEffect* /*effect*/, std::int32_t opcode, std::int32_t /*index*/,
                       std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    if (opcode == audioMasterUpdateDisplay) {
        ++gNotices;
        if (std::this_thread::get_id() == gTestThread)
            ++gNoticesElsewhere;
    }
    return 0;
}

class StateNoticeTest : public testing::Test
{
protected:
    StateNoticeTest()
    {
        const ZInterfaceLock lock;
        product.app->InitLooper();
        WaitForTicks();
        gTestThread = std::this_thread::get_id();
        gNotices = 0;
        gNoticesElsewhere = 0;
    }

    /// Waits until changes are delivered and reported, also those that follow from them.
    static void WaitForTicks()
    {
        const ZInterfaceUnlock unlocked;
        std::this_thread::sleep_for(300ms);
    }

    ProductInstance product{callback};
};

}  // namespace

TEST_F(StateNoticeTest, TellsTheHostOnceOfChangesThatComeTogether)
{
    {
        const ZInterfaceLock lock;
        product.Element("intonation").SetDiscrete(2, false);
        product.Element("detune").SetZFloat(10.0f, false);
        product.Tick();  // of the host's thread, where the host must not be called
    }
    ASSERT_TRUE(eventually([] { return gNotices > 0; }));
    WaitForTicks();
    EXPECT_EQ(gNotices, 1);
    EXPECT_EQ(gNoticesElsewhere, 0);
}

TEST_F(StateNoticeTest, SaysNothingOfParametersAndOfWhatTheHostLoads)
{
    product.effect->setParameter(product.effect, 1, 1.0f);
    {
        const ZInterfaceLock lock;
        product.Element("pitchTranspose").SetDiscrete(4, false);
    }
    WaitForTicks();
    EXPECT_EQ(gNotices, 0);
    product.Ask(effSetProgram, 0, 3);
    WaitForTicks();
    EXPECT_EQ(product.LoadBank(product.Bank()), 1);
    WaitForTicks();
    EXPECT_EQ(gNotices, 0);
}

TEST_F(StateNoticeTest, TellsTheHostOfAMemoryThatTheUserRecalls)
{
    {
        const ZInterfaceLock lock;
        const auto document = product.app->GetCurrentDocument();
        document->HandleZMessage(boost::make_shared<ZMessage>(PLUGINSAVETOPRESETA));
        document->HandleZMessage(boost::make_shared<ZMessage>(PLUGINRECALLPRESETA));
    }
    EXPECT_TRUE(eventually([] { return gNotices == 1; }));
}

}  // namespace orvane
