// SPDX-License-Identifier: GPL-3.0-or-later
// The bays at the ends of a network, and those of an element, a meter and a line through.

#include "support/BayArchiveCheck.h"
#include "support/ProbeBay.h"
#include "support/RealtimeGuard.h"
#include "support/Test.h"

using namespace orvane;

namespace
{

/// A bay of an element with these attributes and children, and its export.
struct Source
{
    explicit Source(const std::string& attributes)
        : bay(xmlOf("<bay name=\"knob\" class=\"ZElementBayClass\"><element name=\"e\" " +
                    attributes + "></element></bay>"),
              nullptr)
        , port(dynamic_cast<ZSignalPort&>(*bay.GetExport(0)))
    {
    }
    void Run() { bay.ProcessSignal(0, 10, 0, 1); }

    ZElementBay bay;
    ZSignalPort& port;
};

/// A line from input to output, without anything between.
struct ZEndBaysTest : testing::Test
{
    ZEndBaysTest()
    {
        input.SetFifoSize(64);
        output.SetFifoSize(64);
        output.Prepare();
        for (std::int32_t channel = 0; channel < 2; ++channel)
            output.Route(channel, input, channel);
    }

    ZInputBay input{"input", 2};
    ZOutputBay output{"output", 2};
};

struct ZMeterBayTest : testing::Test
{
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
    ZMeterBay meter{xmlOf("<bay name=\"Out\" numchannels=\"2\"></bay>"), &application};
};

}  // namespace

TEST(ZElementBayTest, NumberIsOneSampleAndIsArchived)
{
    Source source("type=\"ZFLOAT\" floatvalue=\"0.5\" floatdefault=\"0.25\" archivable=\"false\"");
    source.Run();
    EXPECT_EQ(source.port.GetAvailable(), 1u);
    EXPECT_EQ(source.port.GetBuffer()->Data()[0], 0.5f);
    source.bay.SetDefaults();
    source.Run();
    EXPECT_EQ(source.port.GetBuffer()->Data()[0], 0.25f);

    source.bay.GetElement()->SetZFloat(0.75f, true);
    EXPECT_EQ(source.bay.ExtractXML()->GetChild("element")->GetFloat("floatvalue"), 0.75f);
    EXPECT_EQ(source.bay.Clone()->GetElement()->GetZFloat(), 0.75f);
}

TEST_F(ZEndBaysTest, FullFifoTakesWhatItHasRoomFor)
{
    const std::vector<float> samples(30, 0.5f);
    for (int pass = 0; pass < 3; ++pass) {
        input.Write(samples, 0);
        input.Write(samples, 1);
        runPass(output, 30);
    }
    EXPECT_EQ(output.GetWritten(), 4u);
    EXPECT_EQ(output.Available(0), 64u);
    EXPECT_EQ(output.Free(1), 0u);
    output.Reset();
    EXPECT_EQ(output.Available(0), 0u);
}

TEST_F(ZEndBaysTest, RefusesToWriteOrReadBeyondTheEnds)
{
    std::vector<float> samples(65);
    EXPECT_EQ(failureOf([&] { input.Write(samples, 0); }), "Read first");
    EXPECT_EQ(failureOf([&] { input.Write({samples.data(), 1}, 2); }), "Read first");
    EXPECT_EQ(failureOf([&] { output.Read({samples.data(), 1}, 0); }), "Write first");
    EXPECT_EQ(input.Free(0), 64u);
}

TEST_F(ZMeterBayTest, HoldsPeaksForATenthOfASecond)
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

TEST_F(ZMeterBayTest, CountsClipsUntilTheyAreReset)
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

TEST_F(ZMeterBayTest, CalibrationSetsTheFloorWhilePassesRun)
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

TEST(ZThruBayTest, LastInputGoesToTheRemainingOutputs)
{
    ZThruBay thru(xmlOf("<bay numchannels=\"3\"></bay>"), nullptr);
    const auto left = probe("left", 0);
    const auto right = probe("right", 0);
    right->value = 2.0f;
    const auto sink = boost::make_shared<ZOutputBay>("sink", 3);
    sink->SetFifoSize(16);
    sink->Prepare();
    for (std::int32_t i = 0; i < 3; ++i)
        sink->Route(i, thru, i);
    thru.Route(2, *left, 0);
    thru.SetInputChannelCount(2);
    thru.Route(0, *left, 0);
    thru.Route(1, *right, 0);
    runPass(*sink, 10);
    ZBuffer out(16, "ZBuffer");
    const float expected[] = {1.0f, 2.0f, 2.0f};
    for (std::int32_t i = 0; i < 3; ++i) {
        sink->Read({out.Data(), 10}, i);
        EXPECT_EQ(out.Data()[9], expected[i]);
    }
}
