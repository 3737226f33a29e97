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

TEST(ZAudioFaultsTest, OneFaultIsReportedByTheInterfaceThreadAndThoseBehindItAreCounted)
{
    BoxRecorder recorder;
    const ZInterfaceThread interfaceThread;
    ZAudioFaults faults;
    report(faults);
    EXPECT_TRUE(recorder.boxes.empty());
    fail(faults, "first");
    fail(faults, "second");
    EXPECT_TRUE(recorder.boxes.empty()) << "nothing is shown on the audio thread";
    report(faults);
    report(faults);
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_TRUE(recorder.boxes[0].text.starts_with("first"));
    EXPECT_EQ(faults.GetCount(), 2u);
    fail(faults, "third");
    report(faults);
    ASSERT_EQ(recorder.boxes.size(), 2u);
    EXPECT_TRUE(recorder.boxes[1].text.starts_with("third"));
}

}  // namespace orvane
