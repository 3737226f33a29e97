// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZSignalLooper.h"

#include "support/Eventually.h"
#include "support/ProbeBay.h"
#include "support/SmallApplication.h"
#include "support/Test.h"
#include "zlib/common/signals/ZInputBay.h"
#include "zlib/common/signals/ZSilentDriver.h"

#include <boost/make_shared.hpp>

using namespace orvane;

namespace
{

/// A looper with one bay between its ends.
struct ZSignalLooperTest : testing::Test
{
    ZSignalLooperTest()
    {
        for (std::int32_t channel = 0; channel < ZSignalLooper::kChannels; ++channel) {
            bay->Route(channel, *looper.GetInputBay(), channel);
            looper.GetOutputBay()->Route(channel, *bay, channel);
        }
        looper.SetBufferSize(256);
        looper.InitLooper();
        bay->SetMaxBuffer(256);
    }

    /// Writes count samples to both channels.
    void Write(std::uint32_t count)
    {
        for (std::int32_t channel = 0; channel < ZSignalLooper::kChannels; ++channel)
            looper.InputWrite({transfer.Data(), count}, channel);
    }

    SmallApplication app;
    ZSignalLooper looper{&app};
    boost::shared_ptr<ProbeBay> bay = probe("bay", 2, 2);
    ZBuffer transfer{4096, "transfer"};
};

}  // namespace

TEST_F(ZSignalLooperTest, SilentDriverRunsPassesUntilStopped)
{
    const auto driver = boost::make_shared<ZSilentDriver>();
    looper.SetDriver(driver);
    looper.InitLooper();
    Write(40);
    looper.Start();
    EXPECT_TRUE(looper.IsRunning());
    EXPECT_TRUE(driver->IsRunning());
    EXPECT_TRUE(eventually([&] { return looper.OutputAvailable(0) == 40; }));
    looper.InitLooper();
    EXPECT_TRUE(driver->IsRunning()) << "stopped for the change of settings only";
    EXPECT_EQ(looper.OutputAvailable(0), 0u);
    looper.Stop();
    EXPECT_FALSE(looper.IsRunning());
    EXPECT_TRUE(driver->IsStopped());
    looper.Stop();
}

TEST_F(ZSignalLooperTest, FillThreadFillsTheOutputOnASignal)
{
    const auto driver = boost::make_shared<ZSignalDriver>();
    looper.SetDriver(driver);
    looper.Start();
    Write(256);
    looper.SignalFill();
    EXPECT_TRUE(eventually([&] { return looper.OutputAvailable(0) == 256; }));
    looper.Stop();
    EXPECT_TRUE(driver->IsStopped());
}

TEST_F(ZSignalLooperTest, TwoThreadsDoNotMeetInOneNetwork)
{
    const auto driver = boost::make_shared<ZSilentDriver>();
    looper.SetDriver(driver);
    looper.InitLooper();
    looper.Start();
    std::size_t written = 0;
    std::size_t read = 0;
    const auto pass = [&] {
        const ZInterfaceUnlock unlocked;
        if (std::min(looper.InputFree(0), looper.InputFree(1)) >= 64) {
            Write(64);
            written += 64;
        }
        looper.Drain();
        looper.Fill(64);
        for (; looper.OutputAvailable(0) > 0 && looper.OutputAvailable(1) > 0; ++read)
            for (const std::int32_t channel : {0, 1})
                looper.OutputRead({transfer.Data(), 1}, channel);
    };
    for (int i = 0; i < 2000; ++i)
        pass();
    // A thread that loses its turn inside the network keeps the other one out meanwhile.
    EXPECT_TRUE(eventually([&] {
        pass();
        return read > 0;
    }));
    looper.Stop();
    EXPECT_LE(read, written);
}
