// SPDX-License-Identifier: GPL-3.0-or-later
// Views that show the correction and the pitches, and the slider for cents.

#include "kestrune/common/views/KestruneCentsSlider.h"
#include "kestrune/common/views/KestruneCorrectionMeter.h"
#include "kestrune/common/views/KestrunePitchGraph.h"
#include "kestrune/common/views/ViewBench.h"
#include "zlib/common/views/ViewCanvas.h"

using namespace orvane;

namespace
{

constexpr std::uint32_t kBar = 0xffffcc66;
constexpr ZRect kBarFrame{30, 0, 40, 270};

const char* const kMeterTag =
    "<view name=\"correctionMeter\"><element target=\"correctionMeter\"/>"
    "<rect name=\"bounds\" left=\"0\" top=\"0\" width=\"42\" height=\"270\"/>"
    "<rect name=\"meterframe\" left=\"30\" top=\"0\" width=\"10\" height=\"270\"/></view>";

struct KestruneCorrectionMeterTest : ::testing::Test
{
    using Rows = std::pair<std::int32_t, std::int32_t>;

    KestruneCorrectionMeterTest() { cents->SetRange(-200.0f, 200.0f, true); }

    auto Make() { return bench.Make<KestruneCorrectionMeter>(kMeterTag, 42, 270); }
    /// First and last row of the bar, -1 without a bar.
    Rows BarOf(ZView& meter, float value)
    {
        cents->SetZFloat(value, true);
        const auto picture = ViewBench::Paint(meter);
        Rows rows{-1, -1};
        for (std::int32_t y = 0; y < 270; ++y) {
            EXPECT_NE(picture->At(30, y), kBar) << "the bar is narrower than its frame";
            if (picture->At(31, y) != kBar)
                continue;
            rows.first = rows.first < 0 ? y : rows.first;
            rows.second = y;
        }
        return rows;
    }

    ViewBench bench;
    boost::shared_ptr<ZElement> cents = bench.Add("correctionMeter", ZElement::ZFLOAT);
};

TEST_F(KestruneCorrectionMeterTest, BarRisesAndFallsFromTheMiddle)
{
    const auto meter = Make();
    using Limits = std::numeric_limits<float>;
    const Rows none(-1, -1);
    // Lengths are truncated to whole pixels and clipped by the view.
    for (const auto& [value, rows] : {std::pair{0.0f, none},
                                      {200.0f, Rows(0, 134)},
                                      {-200.0f, Rows(135, 269)},
                                      {100.0f, Rows(135 - 67, 134)},
                                      {-100.0f, Rows(135, 135 + 66)},
                                      {1e30f, Rows(0, 134)},
                                      {Limits::quiet_NaN(), none},
                                      {Limits::infinity(), none}})
        EXPECT_EQ(BarOf(*meter, value), rows) << value;
    cents->SetRange(7.0f, 7.0f, true);
    EXPECT_EQ(BarOf(*meter, 7.0f), none) << "an empty range";
}

TEST_F(KestruneCorrectionMeterTest, ScaleIsDrawnOverTheDefaultFrameToo)
{
    const auto meter = bench.Make<KestruneCorrectionMeter>(
        "<view><element target=\"correctionMeter\"/>"
        "<rect name=\"bounds\" left=\"0\" top=\"0\" width=\"42\" height=\"270\"/></view>",
        42, 270);
    const auto picture = ViewBench::Paint(*meter);
    bool isLabelled = false;
    for (std::int32_t y = 127; y < 144; ++y)
        for (std::int32_t x = 0; x < 24; ++x)
            isLabelled = isLabelled || (picture->At(x, y) & 0xffu) > 0x80u;
    EXPECT_TRUE(isLabelled);
}

TEST_F(KestruneCorrectionMeterTest, RepaintsTheBarOnlyWhenItsValueHasChanged)
{
    const auto meter = Make();
    EXPECT_EQ(cents->GetObserverCount(), 0) << "it is polled";
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    for (const float value : {0.0f, 12.0f, 12.0f, kNaN, kNaN}) {
        cents->SetZFloat(value, true);
        meter->IdleTick();
    }
    EXPECT_EQ(meter->repaints, 2);
    EXPECT_EQ(meter->lastPart, kBarFrame);
    EXPECT_EQ(ViewBench::Paint(*meter, kBarFrame)->Ink(), kBarFrame)
        << "a repaint of the bar leaves the scale as it is";
}

constexpr std::uint32_t kInputColor = 0xfffac967;

const char* const kGraphTag =
    "<view name=\"graph\"><element inputPitch=\"inputPitch\" outputPitch=\"outputPitch\"/>"
    "<element pitchRange=\"sourceType\" axisType=\"axis\"/>"
    "<rect name=\"bounds\" left=\"0\" top=\"0\" width=\"360\" height=\"160\"/>"
    "<rect name=\"graphframe\" left=\"50\" top=\"10\" width=\"300\" height=\"130\"/>"
    "<color name=\"gradstartcolor\" red=\"0\" green=\"0\" blue=\"0\" alpha=\"255\"/>"
    "<color name=\"gradendcolor\" red=\"0\" green=\"0\" blue=\"0\" alpha=\"255\"/></view>";

struct OpenGraph : KestrunePitchGraph
{
    using KestrunePitchGraph::KestrunePitchGraph;
    using KestrunePitchGraph::mInputHistory;
    using KestrunePitchGraph::mOutputHistory;
};

struct KestrunePitchGraphTest : ::testing::Test
{
    void Sing(float in, float out, int frames) const
    {
        input->SetZFloat(in, true);
        output->SetZFloat(out, true);
        for (int i = 0; i < frames; ++i)
            graph->IdleTick();
    }
    /// The middle of the rows of the plot in which a column has the colour, -1 for none.
    static std::int32_t RowOf(const Canvas& picture, std::int32_t x, std::uint32_t color)
    {
        std::int32_t first = -1;
        std::int32_t last = -1;
        for (std::int32_t y = 10; y < 140; ++y) {
            if (picture.At(x, y) != color)
                continue;
            first = first < 0 ? y - 10 : first;
            last = y - 10;
        }
        return (first + last) / 2;
    }
    ViewBench bench;
    boost::shared_ptr<ZElement> input = bench.Add("inputPitch", ZElement::ZFLOAT);
    boost::shared_ptr<ZElement> output = bench.Add("outputPitch", ZElement::ZFLOAT);
    boost::shared_ptr<ZElement> range = bench.Add("sourceType", ZElement::ZDISCRETE);
    boost::shared_ptr<ZElement> axis = bench.Add("axis", ZElement::ZDISCRETE);
    boost::shared_ptr<Counted<OpenGraph>> graph = bench.Make<OpenGraph>(kGraphTag, 360, 160);
};

TEST_F(KestrunePitchGraphTest, KeepsTheLast150FramesAndRepaintsAtEach)
{
    EXPECT_EQ(input->GetObserverCount() + output->GetObserverCount(), 0) << "pitches are polled";
    const int before = graph->repaints;
    Sing(100.0f, 110.0f, 1);
    Sing(200.0f, 220.0f, 149);
    Sing(300.0f, 330.0f, 1);
    EXPECT_EQ(graph->mInputHistory.size(), 150u);
    EXPECT_EQ(graph->mInputHistory.front(), 200.0f);
    EXPECT_EQ(graph->mOutputHistory.back(), 330.0f);
    EXPECT_EQ(graph->repaints - before, 151) << "also while the pitch stays the same";
    EXPECT_EQ(graph->lastPart, graph->GetGraphFrame());
    Sing(std::numeric_limits<float>::infinity(), -1.0f, 1);
    EXPECT_EQ(graph->mInputHistory.back(), 0.0f);
}

TEST_F(KestrunePitchGraphTest, TellsThePitchesAtAPlaceAsNotesAndInHertz)
{
    Sing(218.5f, 220.0f, 75);
    EXPECT_EQ(graph->TipAt(60), ZString("in -, out -")) << "before there was a pitch";
    EXPECT_EQ(graph->TipAt(340), ZString("in A3 -12 cents (218.5 Hz), out A3 0 cents (220 Hz)"));
    const auto notes = ViewBench::Paint(*graph)->Pixels();
    axis->SetDiscrete(1, false);
    bench.Tick();
    EXPECT_NE(ViewBench::Paint(*graph)->Pixels(), notes) << "labels in Hz";
}

TEST_F(KestrunePitchGraphTest, CurvesAndLabelsLineUpInEveryRange)
{
    using Ends = std::pair<float, float>;
    for (const auto& [index, ends] : {std::pair{-1, Ends{10, 600}},
                                      {0, Ends{73, 1300}},
                                      {2, Ends{165, 1300}},
                                      {3, Ends{20, 330}},
                                      {4, Ends{330, 2500}},
                                      {1, Ends{73, 494}}})
    {
        SCOPED_TRACE(index);
        range->SetDiscrete(index, false);
        bench.Tick();
        const auto [low, high] = ends;
        EXPECT_EQ(graph->FrequencyAt(0), high);
        EXPECT_NEAR(graph->FrequencyAt(130), low, 0.01f);
        EXPECT_EQ(graph->HeightOf(0.0f), 130) << "no voice lies at the bottom";
        for (const std::int32_t y : {0, 10, 65, 120}) {
            EXPECT_NEAR(graph->HeightOf(graph->FrequencyAt(y)), y, 1);
            Sing(graph->FrequencyAt(y), 0.0f, 150);
            EXPECT_NEAR(RowOf(*ViewBench::Paint(*graph), 200, kInputColor), y, 1);
        }
    }
}

using KestruneCentsSliderTest = ViewCanvasTest;

TEST_F(KestruneCentsSliderTest, SnapsToSemitonesUnlessControlIsHeld)
{
    // 130 pixels wide with a thumb size of 15: over a range of 200 cents a pixel is two cents.
    const auto element = MakeFloat(-100.0f, 100.0f, 0.0f);
    const auto slider = Make<KestruneCentsSlider>("thumbsize=\"15\" thumbheight=\"16\"", "",
                                                  "width=\"130\" height=\"20\"");
    slider->SetThumbBitmap(plainBitmap(1, 1));
    slider->AttachToElement(element);
    const auto written = [&](std::int32_t cents, std::uint32_t mods = 0) {
        slider->TrackMouse({50 + cents / 2, 5}, mods);
        return element->GetZFloat();
    };
    EXPECT_EQ(written(60), 100.0f);
    EXPECT_EQ(written(50), 100.0f) << "half a semitone rounds up";
    EXPECT_EQ(written(40), 0.0f);
    EXPECT_EQ(written(-20), -100.0f) << "negative values round down";
    EXPECT_EQ(written(900), 100.0f);
    EXPECT_EQ(written(-20, ZView::kMouseControl), -20.0f);
}

}  // namespace
