// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/PluginEntry.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "support/BoxRecorder.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <thread>

namespace orvane
{

namespace
{

std::atomic<int> gCalls = 0;
std::atomic<int> gCallsUnderLock = 0;

// A host that answers from a thread of its own, as one with a message queue does, and asks the
// plug-in something before it goes on.
std::intptr_t callbackThroughAnotherThread(AEffect* effect, std::int32_t opcode,
                                           std::int32_t /*index*/, std::intptr_t /*value*/,
                                           void* /*ptr*/, float /*opt*/)
{
    ++gCalls;
    gCallsUnderLock += ZInterfaceLock::IsHeld() ? 1 : 0;
    if (effect != nullptr) {
        std::thread([effect] {
            effect->dispatcher(effect, effGetProgram, 0, 0, nullptr, 0.0f);
        }).join();
    }
    return opcode == audioMasterVersion ? 2400 : 0;
}

class ZVSTPluginTest : public testing::Test
{
protected:
    ZVSTPluginTest()
    {
        gCalls = 0;
        gCallsUnderLock = 0;
        effect = openPlugin(callbackThroughAnotherThread);
    }
    ~ZVSTPluginTest() override { Ask(effClose); }

    std::intptr_t Ask(std::int32_t opcode, std::intptr_t value = 0) const
    {
        return effect->dispatcher(effect, opcode, 0, value, nullptr, 0.0f);
    }

    AEffect* effect;
};

// Whether a call made on another thread comes back while this one holds the interface lock.
bool returnsWhileTheInterfaceIsBusy(const std::function<void()>& call)
{
    std::future<void> done;
    std::future_status status;
    {
        const ZInterfaceLock lock;
        done = std::async(std::launch::async, call);
        status = done.wait_for(std::chrono::milliseconds(50));
    }
    done.wait();
    return status == std::future_status::ready;
}

}  // namespace

TEST_F(ZVSTPluginTest, TheHostIsNeverCalledUnderTheInterfaceLock)
{
    ASSERT_NE(effect, nullptr);
    Ask(effMainsChanged, 1);
    EXPECT_EQ(gCalls, 2);
    EXPECT_EQ(gCallsUnderLock, 0);
}

TEST_F(ZVSTPluginTest, CallsOfTheAudioThreadDoNotWaitForABusyInterface)
{
    EXPECT_TRUE(returnsWhileTheInterfaceIsBusy([this] {
        Ask(effMainsChanged, 0);
        Ask(effStartProcess);
        Ask(effStopProcess);
        Ask(effProcessEvents);
        effect->processReplacing(effect, nullptr, nullptr, 0);
        effect->process(effect, nullptr, nullptr, 0);
        effect->setParameter(effect, 0, 0.0f);
        effect->getParameter(effect, 0);
    }));
    EXPECT_FALSE(returnsWhileTheInterfaceIsBusy([this] { Ask(effGetProgram); }));
}

TEST(PluginEntryFailureTest, AFailureGivesNothingAndIsReportedUnlessItIsAPlainEnd)
{
    BoxRecorder recorder;
    static std::int32_t code;
    const auto failing = [](AEffect*, std::int32_t, std::int32_t, std::intptr_t, void*,
                            float) -> std::intptr_t { throw ZException(code, "no description"); };
    for (const std::int32_t each : {-1, 3}) {
        code = each;
        EXPECT_EQ(openPlugin(failing), nullptr);
        ASSERT_EQ(recorder.boxes.size(), 1u);
    }
    EXPECT_TRUE(recorder.boxes[0].text.starts_with("no description"));
}

}  // namespace orvane
