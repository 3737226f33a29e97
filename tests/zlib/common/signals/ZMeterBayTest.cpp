// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZMeterBay.h"

#include "support/BayArchiveCheck.h"
#include "support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>

namespace orvane
{

namespace
{

class ZMeterBayTest : public testing::Test
{
protected:
    boost::shared_ptr<ZElement> Element(const std::string& name)
    {
        boost::shared_ptr<ZElement> element;
        EXPECT_TRUE(meter.GetElement()->FindSubElement("Out" + name, element)) << name;
        return element;
    }

    /// Runs a block on both channels whose samples all have this value.
    void Run(float value, std::uint32_t count = 100)
    {
        for (std::int32_t i = 0; i < 2; ++i)
            std::fill_n(dynamic_cast<ZSignalPort&>(*meter.GetImport(i)).GetBuffer()->Data(), count,
                        value);
        meter.ProcessSignal(0, count, 0, 2);
    }

    float Peak() { return Element("InstPeakdBChannel1")->GetZFloat(); }

    SmallApplication application;
    ZMeterBay meter{firstBay("<bay name=\"Out\" numchannels=\"2\"></bay>"), &application};
};

}  // namespace

TEST_F(ZMeterBayTest, HoldsPeaksForATenthOfASecondAndHandsTheSignalOn)
{
    meter.Reset();
    EXPECT_EQ(Peak(), -144.0f);
    Run(0.0f);
    EXPECT_EQ(Peak(), -144.0f);
    Run(-0.5f);
    EXPECT_NEAR(Peak(), -6.0206f, 1e-3f);
    const auto& port = dynamic_cast<const ZSignalPort&>(*meter.GetExport(1));
    EXPECT_EQ(port.GetAvailable(), 100u);
    EXPECT_EQ(port.GetBuffer()->Data()[99], -0.5f);
    for (int block = 0; block < 44; ++block)  // 4400 of 4410 samples
        Run(0.1f);
    EXPECT_NEAR(Peak(), -6.0206f, 1e-3f);
    Run(0.1f);
    EXPECT_NEAR(Peak(), -20.0f, 1e-3f);
}

TEST_F(ZMeterBayTest, CountsClipsUntilSomebodyResetsThem)
{
    const auto clips = Element("ClipCountChannel0");
    const auto reset = Element("ClipReset");
    for (int i = 0; i < 3; ++i) {
        Run(1.5f);
        Run(0.5f, 10);  // what stands behind the block's end is no signal
    }
    EXPECT_EQ(clips->GetZFloat(), 3.0f);
    reset->SetDiscrete(0, false);
    {
        const RealtimeGuard guard;
        meter.ProcessSignal(0, 10, 0, 2);
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
    }
    EXPECT_EQ(clips->GetZFloat(), 0.0f);
    EXPECT_EQ(reset->GetDiscrete(), 1);
    Run(1.5f);
    EXPECT_EQ(clips->GetZFloat(), 1.0f);
}

TEST_F(ZMeterBayTest, CalibrationIsTheFloorOfThePeaksWhilePassesRun)
{
    const auto peak = Element("InstPeakdBChannel0");
    const auto calibration = Element("MeterCalibration");
    std::thread audio([this] {
        for (int i = 0; i < 2000; ++i)
            Run(1.5f, 16);
    });
    for (int i = 0; i < 500; ++i) {
        Element("ClipReset")->SetDiscrete(0, false);
        calibration->SetDiscrete(i % 3, false);
        for (const auto& element : {peak, calibration})
            element->FlushMark(nullptr);
        application.ProcessQueue();
        EXPECT_EQ(peak->Min(), -48.0f * static_cast<float>(i % 3 + 1));
        EXPECT_LT(peak->GetZFloat(), 4.0f);
    }
    audio.join();
    EXPECT_EQ(Element("Heartbeat")->GetZFloat(), 2000.0f);
    meter.SetDefaults();
    EXPECT_EQ(peak->Min(), -96.0f);
}

}  // namespace orvane
