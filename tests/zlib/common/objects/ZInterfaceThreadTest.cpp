// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZInterfaceThread.h"

#include "support/BoxRecorder.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZLooper.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZSemaphore.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

namespace orvane
{

namespace
{

/// Installs a modal presenter for the life of the object.
class ModalPresenter
{
public:
    explicit ModalPresenter(ZMessageBox::ModalPresenter presenter)
        : mBefore(ZMessageBox::SetModalPresenter(std::move(presenter)))
    {
    }
    ~ModalPresenter() { ZMessageBox::SetModalPresenter(mBefore); }

private:
    ZMessageBox::ModalPresenter mBefore;
};

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

TEST(ZInterfaceThreadTest, ThreadsMakeAndDestroyReferencesAtTheSameTime)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([] {
            for (int n = 0; n < 20; ++n) {
                const ZInterfaceLock lock;  // released while the thread is joined
                const ZInterfaceThread hold;
                hold.GetLoop().Post([] { const ZInterfaceLock inner; });
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_FALSE(ZInterfaceThread::Post([] {}));
}

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

TEST(ZMessageBoxTest, BoxOfAnotherThreadIsShownOnTheInterfaceThread)
{
    ZSemaphore open("open", 0);
    ZSemaphore close("close", 0);
    std::atomic<int> shown{0};
    std::atomic<bool> onThread{false};
    const ModalPresenter presenter([&](ZMessageBox::Kind, const ZString&, const ZString&) {
        onThread = ZInterfaceThread::IsCurrent();
        ++shown;
        open.Release();
        const ZInterfaceUnlock unlocked;
        close.Wait();
        return true;
    });
    const ZInterfaceThread hold;
    ZMessageBox::Show(ZMessageBox::kError, "title", "text");
    open.Wait();
    close.Release();
    flush(hold);
    EXPECT_EQ(shown, 1);
    EXPECT_TRUE(onThread);
}

TEST(ZMessageBoxTest, BoxWithoutADisplayIsALineOnStandardError)
{
    const ModalPresenter noDisplay(
        [](ZMessageBox::Kind, const ZString&, const ZString&) { return false; });
    testing::internal::CaptureStderr();
    ZMessageBox::Show(ZMessageBox::kWarning, "no thread", "one");
    {
        const ZInterfaceThread hold;
        ZMessageBox::Show(ZMessageBox::kInformation, "no display", "two");
        flush(hold);
    }
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

TEST(ZMessageBoxTest, ReportOfAnExceptionHasTextCodeAndAdvice)
{
    BoxRecorder recorder;
    ZException("Message not found").Report();
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].text,
              "Message not found\n\rCode -1. You should close the plugin and remove it from any "
              "inserts before trying to use it again");
}

}  // namespace orvane
