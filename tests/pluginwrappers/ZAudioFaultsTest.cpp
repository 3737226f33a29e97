#include "pluginwrappers/common/ZAudioFaults.h"

#include "zlib/common/ZException.h"
#include "zlib/common/ZInterfaceThread.h"

#include "support/BoxRecorder.h"
#include "support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <future>

namespace orvane
{

namespace
{

void fail(ZAudioFaults& faults, const char* text)
{
    try {
        throw ZException(-1, text);
    } catch (...) {
        const RealtimeGuard guard;
        faults.Keep();
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    }
}

// Reports, and waits for what the interface thread makes of it.
void report(ZAudioFaults& faults)
{
    faults.Report();
    std::promise<void> done;
    ASSERT_TRUE(ZInterfaceThread::Post([&done] { done.set_value(); }));
    done.get_future().wait();
}

}  // namespace

TEST(ZAudioFaultsTest, OneFaultAtATimeIsReportedAndByTheInterfaceThread)
{
    BoxRecorder recorder;
    const ZInterfaceThread interfaceThread;
    ZAudioFaults faults;
    for (const char* text : {"first", "second"}) {
        recorder.boxes.clear();
        fail(faults, text);
        fail(faults, "behind it");
        EXPECT_TRUE(recorder.boxes.empty()) << "nothing is shown on the audio thread";
        report(faults);
        report(faults);
        ASSERT_EQ(recorder.boxes.size(), 1u);
        EXPECT_TRUE(recorder.boxes[0].text.starts_with(text));
    }
}

}  // namespace orvane
