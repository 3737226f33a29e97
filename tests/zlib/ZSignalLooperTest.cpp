#include "zlib/common/ZSignalLooper.h"

#include "zlib/common/ZBlockProcessingBay.h"
#include "zlib/common/ZBuffer.h"
#include "zlib/common/ZException.h"
#include "zlib/common/ZInputBay.h"
#include "zlib/common/ZInterfaceLock.h"
#include "zlib/common/ZMessage.h"
#include "zlib/common/ZMessageIds.h"
#include "zlib/common/ZOutputBay.h"
#include "zlib/common/ZSilentDriver.h"
#include "zlib/common/ZXMLElement.h"

#include "support/RealtimeGuard.h"
#include "support/SmallApplication.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

#include <boost/make_shared.hpp>

namespace orvane
{

using namespace std::chrono_literals;

namespace
{

constexpr std::int32_t kBlock = 64;

boost::shared_ptr<ZXMLElement> childOf(const char* text)
{
    return ZXMLDocument(text, static_cast<std::int32_t>(std::strlen(text))).GetChild(0);
}

/// A looper with one bay of fixed blocks between its ends.
class ZSignalLooperTest : public testing::Test
{
protected:
    ZSignalLooperTest()
        : bay(boost::make_shared<ZBlockProcessingBay>(
              childOf("<bay name=\"delay\" class=\"ZBlockProcessingBayClass\" numchannels=\"2\">"
                      "</bay>"),
              &app))
    {
        bay->Prepare();
        bay->SetBlockSize(kBlock);
        for (std::int32_t channel = 0; channel < ZSignalLooper::kChannels; ++channel) {
            bay->Route(channel, *looper.GetInputBay(), channel);
            looper.GetOutputBay()->Route(channel, *bay, channel);
        }
        SetBlockSize(256);
    }

    void SetBlockSize(std::uint32_t samples)
    {
        looper.SetBufferSize(samples);
        looper.InitLooper();
        bay->SetMaxBuffer(static_cast<std::int32_t>(samples));
    }

    /// Writes count samples to both channels, the second with the other sign.
    void Write(const float* samples, std::uint32_t count)
    {
        for (std::int32_t channel = 0; channel < ZSignalLooper::kChannels; ++channel) {
            for (std::uint32_t i = 0; i < count; ++i)
                transfer.Data()[i] = channel == 0 ? samples[i] : -samples[i];
            looper.InputWrite(transfer, count, channel);
        }
    }
    std::vector<float> Read(std::uint32_t count, std::int32_t channel)
    {
        looper.OutputRead(transfer, count, channel);
        return {transfer.Data(), transfer.Data() + count};
    }

    SmallApplication app;
    ZSignalLooper looper{&app};
    boost::shared_ptr<ZBlockProcessingBay> bay;
    ZBuffer transfer{4096, "transfer"};
};

std::vector<float> ramp(std::size_t count)
{
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = static_cast<float>(i + 1);
    return samples;
}

template <typename Condition>
bool eventually(const Condition& condition)
{
    for (int i = 0; i < 2000 && !condition(); ++i)
        std::this_thread::sleep_for(1ms);
    return condition();
}

}  // namespace

TEST_F(ZSignalLooperTest, AsManySamplesComeOutAsGoInWhateverTheBlocks)
{
    const std::vector<float> in = ramp(10000);
    std::vector<float> out[2];
    std::mt19937 random(4);
    for (std::size_t done = 0; done < in.size();) {
        const std::size_t rest = in.size() - done;
        const auto count = static_cast<std::uint32_t>(std::min<std::size_t>(
            std::uniform_int_distribution<std::size_t>(1, 256)(random), rest));
        Write(in.data() + done, count);
        ASSERT_EQ(looper.Fill(count), count);
        for (std::int32_t channel = 0; channel < 2; ++channel) {
            ASSERT_EQ(looper.OutputAvailable(channel), count);
            const std::vector<float> block = Read(count, channel);
            out[channel].insert(out[channel].end(), block.begin(), block.end());
        }
        done += count;
    }
    for (std::size_t i = 0; i < in.size(); ++i) {
        const float expected = i < kBlock ? 0.0f : in[i - kBlock];
        ASSERT_EQ(out[0][i], expected) << i;
        ASSERT_EQ(out[1][i], -expected) << i;
    }
}

TEST_F(ZSignalLooperTest, FillGivesWhatThereIs)
{
    EXPECT_EQ(looper.Fill(100), 0u);
    EXPECT_EQ(looper.Fill(0), 0u);
    const std::vector<float> in = ramp(60);
    Write(in.data(), 60);
    EXPECT_EQ(looper.Fill(100), 60u);
    EXPECT_EQ(looper.OutputAvailable(0), 60u);
}

TEST_F(ZSignalLooperTest, DrainAndFillNeitherAllocateNorLock)
{
    const std::vector<float> in = ramp(256);
    const RealtimeGuard guard;
    for (int i = 0; i < 10; ++i) {
        Write(in.data(), 200);
        looper.Drain();
        looper.Fill(200);
        looper.OutputRead(transfer, 200, 0);
        looper.OutputRead(transfer, 200, 1);
    }
    EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
}

TEST_F(ZSignalLooperTest, SizesBecomePowersOfTwo)
{
    const std::pair<std::uint32_t, std::uint32_t> sizes[] = {
        {0, 1}, {1, 1}, {2, 2}, {3, 4}, {100, 128}, {512, 512}, {513, 1024}};
    for (const auto& [asked, taken] : sizes) {
        looper.SetBufferSize(asked);
        EXPECT_EQ(looper.GetPreferredBuffer(), taken);
        EXPECT_EQ(looper.GetMaxBuffer(), taken);
    }
    looper.SetBufferSizes(300, 700);
    EXPECT_EQ(looper.GetPreferredBuffer(), 300u);
    EXPECT_EQ(looper.GetMaxBuffer(), 700u);
}

TEST_F(ZSignalLooperTest, InitLooperHandsTheSettingsOutAndEmptiesTheFifos)
{
    const auto driver = boost::make_shared<ZSignalDriver>();
    looper.SetDriver(driver);
    const std::vector<float> in = ramp(100);
    Write(in.data(), 100);
    looper.Fill(50);
    looper.SetBufferSize(100);
    looper.SetSampleRate(48000.0f);
    EXPECT_EQ(looper.InputFree(0), 206u) << "settings wait for InitLooper";
    looper.InitLooper();
    for (std::int32_t channel = 0; channel < 2; ++channel) {
        EXPECT_EQ(looper.InputFree(channel), 128u);
        EXPECT_EQ(looper.OutputAvailable(channel), 0u);
    }
    EXPECT_FALSE(looper.HasMessages());
    for (const ZSignalBay* end : {static_cast<ZSignalBay*>(looper.GetInputBay().get()),
                                  static_cast<ZSignalBay*>(looper.GetOutputBay().get())})
    {
        EXPECT_EQ(end->GetMaxBuffer(), 128);
        EXPECT_EQ(end->GetSampleRate(), 48000.0f);
    }
    EXPECT_EQ(driver->GetBufferSize(), 128u);
    EXPECT_EQ(driver->GetInputRate(), 48000.0f);
    EXPECT_TRUE(driver->IsOpen());
    EXPECT_TRUE(driver->IsStopped());
}

TEST_F(ZSignalLooperTest, DrainNotesTheLongestQueue)
{
    const std::size_t before = looper.GetHighWater();
    for (std::size_t i = 0; i < before + 3; ++i)
        looper.GetInputBay()->PostZMessage(boost::make_shared<ZMessage>(ZRESET));
    looper.Drain();
    EXPECT_EQ(looper.GetHighWater(), before + 3);
    EXPECT_FALSE(looper.HasMessages());
}

TEST_F(ZSignalLooperTest, ASilentDriverRunsPassesUntilItIsStopped)
{
    const auto driver = boost::make_shared<ZSilentDriver>();
    looper.SetDriver(driver);
    looper.InitLooper();
    const std::vector<float> in = ramp(40);
    Write(in.data(), 40);
    const ZInterfaceLock lock;  // given up while threads are joined
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

TEST_F(ZSignalLooperTest, TheFillThreadFillsTheOutputWhenItsDriverSignals)
{
    const auto driver = boost::make_shared<ZSignalDriver>();
    looper.SetDriver(driver);
    looper.Start();
    const std::vector<float> in = ramp(256);
    Write(in.data(), 256);
    std::this_thread::sleep_for(30ms);
    EXPECT_EQ(looper.OutputAvailable(0), 0u) << "no signal, no pass";
    looper.SignalFill();
    EXPECT_TRUE(eventually([&] { return looper.OutputAvailable(0) == 256; }));
    looper.Stop();
    EXPECT_TRUE(driver->IsStopped());
}

TEST_F(ZSignalLooperTest, TwoThreadsThatClockOneNetworkDoNotMeetInIt)
{
    const auto driver = boost::make_shared<ZSilentDriver>();
    looper.SetDriver(driver);
    looper.InitLooper();
    looper.Start();
    const std::vector<float> in = ramp(64);
    std::size_t written = 0;
    std::size_t read = 0;
    for (int i = 0; i < 2000; ++i) {
        if (looper.InputFree(1) >= 64) {
            Write(in.data(), 64);
            written += 64;
        }
        looper.Drain();
        looper.Fill(64);
        while (looper.OutputAvailable(0) > 0 && looper.OutputAvailable(1) > 0) {
            Read(1, 0);
            Read(1, 1);
            ++read;
        }
    }
    looper.Stop();
    EXPECT_GT(read, 0u);
    EXPECT_LE(read, written);
}

TEST(ZSignalDriverTest, APlainDriverOnlyRemembers)
{
    ZSignalDriver driver;
    EXPECT_TRUE(driver.IsStopped());
    driver.Start();
    EXPECT_TRUE(driver.IsRunning());
    driver.Stop();
    EXPECT_FALSE(driver.IsRunning());
    driver.Open();
    EXPECT_TRUE(driver.IsOpen());
    driver.Close();
    EXPECT_FALSE(driver.IsOpen());
    EXPECT_EQ(driver.GetDeviceCount(true), 0);
    EXPECT_THROW(static_cast<void>(driver.GetMsTime()), ZException);
    EXPECT_THROW(static_cast<void>(driver.GetDeviceName(true, 0)), ZException);
}

}  // namespace orvane
