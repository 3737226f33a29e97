#include "zlib/common/ZInterfaceThread.h"

#include "zlib/common/ZInterfaceLock.h"
#include "zlib/common/ZLooper.h"
#include "zlib/common/ZMessageBox.h"
#include "zlib/common/ZSemaphore.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

namespace orvane
{

using namespace std::chrono_literals;

namespace
{

/// Puts a modal presenter in force for the life of the object.
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

class TickingLooper : public ZLooper
{
public:
    TickingLooper()
        : ZLooper("ticking")
    {
        InitLooper();
    }

    std::atomic<int> ticks{0};

protected:
    void FlushElementChanges() override { ++ticks; }
};

/// Ends a process as one ends that has left an instance open.
[[noreturn]] void exitWithOpenInstance(bool holdingTheLock)
{
    const TickingLooper* open = new TickingLooper;
    while (open->ticks == 0)
        std::this_thread::sleep_for(1ms);
    if (holdingTheLock)
        new ZInterfaceLock;
    std::exit(open->HasMessages() ? 1 : 0);
}

}  // namespace

TEST(ZInterfaceThreadTest, StartsWithTheFirstHoldAndEndsWithTheLast)
{
    EXPECT_FALSE(ZInterfaceThread::Post([] {}));
    for (int cycle = 0; cycle < 20; ++cycle) {
        ZSemaphore ran("ran", 0);
        const ZInterfaceThread first;
        const auto second = std::make_unique<ZInterfaceThread>();
        EXPECT_EQ(&first.GetLoop(), &second->GetLoop());
        EXPECT_TRUE(ZInterfaceThread::Post([&] {
            EXPECT_TRUE(ZInterfaceThread::IsCurrent());
            ran.Release();
        }));
        ran.Wait();
    }
    EXPECT_FALSE(ZInterfaceThread::Post([] {}));
    EXPECT_FALSE(ZInterfaceThread::IsCurrent());
}

TEST(ZInterfaceThreadTest, ThreadsTakeAndDropHoldsAtWill)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([] {
            for (int n = 0; n < 20; ++n) {
                const ZInterfaceLock lock;  // given up while the thread is joined
                const ZInterfaceThread hold;
                hold.GetLoop().Post([] { const ZInterfaceLock inner; });
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

TEST(ZInterfaceThreadTest, TheLastHoldMayGoOnTheThreadItself)
{
    auto gone = std::make_shared<std::atomic<bool>>(false);
    auto* hold = new ZInterfaceThread;
    hold->GetLoop().Post([hold, gone] {
        delete hold;
        *gone = true;
    });
    while (!*gone)
        std::this_thread::sleep_for(1ms);
    EXPECT_FALSE(ZInterfaceThread::Post([] {}));
}

TEST(ZInterfaceThreadDeathTest, AnInstanceThatIsNeverClosedDoesNotKeepTheProcess)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    for (const bool holdingTheLock : {false, true}) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EXIT(exitWithOpenInstance(holdingTheLock), testing::ExitedWithCode(0), "^$");
        EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    }
}

TEST(ZMessageBoxTest, ABoxOfAnotherThreadIsHandedOverAndShownOnce)
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
    ZMessageBox::Show(ZMessageBox::kError, "title", "text");
    close.Release();
    ZSemaphore flushed("flushed", 0);
    hold.GetLoop().Post([&] { flushed.Release(); });
    flushed.Wait();
    EXPECT_EQ(shown, 1);
    EXPECT_TRUE(onThread);
}

TEST(ZMessageBoxTest, ABoxThatNobodyCanShowIsALine)
{
    const ModalPresenter noDisplay(
        [](ZMessageBox::Kind, const ZString&, const ZString&) { return false; });
    testing::internal::CaptureStderr();
    ZMessageBox::Show(ZMessageBox::kWarning, "no thread", "one");
    {
        const ZInterfaceThread hold;
        ZSemaphore flushed("flushed", 0);
        ZMessageBox::Show(ZMessageBox::kInformation, "no display", "two");
        hold.GetLoop().Post([&] { flushed.Release(); });
        flushed.Wait();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "no thread (warning): one\nno display (information): two\n");
}

}  // namespace orvane
