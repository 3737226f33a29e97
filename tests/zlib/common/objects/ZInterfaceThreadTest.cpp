// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZInterfaceThread.h"

#include "support/BoxRecorder.h"
#include "support/Test.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZLooper.h"

#include <unistd.h>

using namespace orvane;

namespace
{

/// Returns when everything that was posted before has been delivered.
void flush(const ZInterfaceThread& hold)
{
    ZSemaphore flushed("flushed", 0);
    hold.GetLoop().Post([&] { flushed.Release(); });
    flushed.Wait();
}

/// Exits as a host that has left an instance open and is inside a call. The alarm kills the process
/// if that takes too long.
[[noreturn]] void exitWithOpenInstance()
{
    (new ZLooper("open"))->InitLooper();
    static const auto* const hold =
        new ZInterfaceThread;  // static, so that the leak checker finds it
    flush(*hold);
    new ZInterfaceLock;
    alarm(5);
    std::exit(0);
}

}  // namespace

TEST(ZInterfaceThreadTest, LastReferenceMayBeDestroyedOnTheThread)
{
    ZSemaphore gone("gone", 0);
    auto* hold = new ZInterfaceThread;
    hold->GetLoop().Post([&] {
        EXPECT_TRUE(ZInterfaceThread::IsCurrent());
        delete hold;
        gone.Release();
    });
    gone.Wait();
    EXPECT_FALSE(ZInterfaceThread::Post([] {}));
}

TEST(ZInterfaceThreadDeathTest, OpenInstanceDoesNotKeepTheProcessFromEnding)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(exitWithOpenInstance(), testing::ExitedWithCode(0), "^$");
}

TEST(ZMessageBoxTest, BoxWithoutADisplayIsALineOnStandardError)
{
    const auto before = ZMessageBox::SetModalPresenter(
        [](ZMessageBox::Kind, const ZString&, const ZString&) { return false; });
    testing::internal::CaptureStderr();
    ZMessageBox::Show(ZMessageBox::kWarning, "no thread", "one");
    {
        const ZInterfaceThread hold;
        ZMessageBox::Show(ZMessageBox::kInformation, "no display", "two");
        flush(hold);
    }
    ZMessageBox::SetModalPresenter(before);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "no thread (warning): one\nno display (information): two\n");
}

TEST(ZMessageBoxTest, OpenTextIsNotShownTwice)
{
    BoxRecorder recorder;
    recorder.whileOpen = [] { ZMessageBox::Show(ZMessageBox::kWarning, "again", "same text"); };
    ZMessageBox::Show(ZMessageBox::kError, "first", "same text");
    EXPECT_EQ(recorder.boxes.size(), 1u);
    recorder.whileOpen = nullptr;
    ZMessageBox::Show(ZMessageBox::kError, "later", "same text");
    EXPECT_EQ(recorder.boxes.size(), 2u);
}
