// SPDX-License-Identifier: GPL-3.0-or-later
// The main function of test programs whose tests hold the interface lock, as the host shell does
// around each call of the host's main thread. A test that plays another thread gives it up with
// ZInterfaceUnlock.

#include "support/Eventually.h"
#include "support/Test.h"
#include "zlib/common/objects/ZInterfaceLock.h"

namespace orvane
{

namespace
{

/// Holds the lock from before a test's fixture is made until after it is gone.
struct InterfaceLockListener : testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo& /*test*/) override { mLock.emplace(); }
    void OnTestEnd(const testing::TestInfo& /*test*/) override { mLock.reset(); }

private:
    std::optional<ZInterfaceLock> mLock;
};

void sleepWithoutLock()
{
    const ZInterfaceUnlock unlocked;
    sleepForAMillisecond();
}

}  // namespace

}  // namespace orvane

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new orvane::InterfaceLockListener);
    orvane::pauseOfEventually = orvane::sleepWithoutLock;
    return RUN_ALL_TESTS();
}
