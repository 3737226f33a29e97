// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestrunePitchGraph.h"

#include "kestrune/common/views/ViewBench.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::uint32_t kInputColor = 0xfffac967;
constexpr std::uint32_t kOutputColor = 0xfffa8e63;

const char* const kGraphTag =
    "<view name=\"graph\"><element inputPitch=\"inputPitch\" outputPitch=\"outputPitch\"/>"
    "<element axisType=\"axisType\" pitchRange=\"sourceType\"/>"
    "<rect name=\"bounds\" left=\"0\" top=\"0\" width=\"360\" height=\"160\"/>"
    "<rect name=\"graphframe\" left=\"50\" top=\"10\" width=\"300\" height=\"130\"/>"
    "<color name=\"gradstartcolor\" red=\"0\" green=\"0\" blue=\"0\" alpha=\"255\"/>"
    "<color name=\"gradendcolor\" red=\"0\" green=\"0\" blue=\"0\" alpha=\"255\"/></view>";

class OpenGraph : public KestrunePitchGraph
{
public:
    using KestrunePitchGraph::KestrunePitchGraph;
    using KestrunePitchGraph::mInputHistory;
    using KestrunePitchGraph::mOutputHistory;
};

class KestrunePitchGraphTest : public ::testing::Test
{
protected:
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
    /// The rows of the plot with a tick on the vertical axis.
    [[nodiscard]] std::vector<std::int32_t> Ticks() const
    {
        const auto picture = ViewBench::Paint(*graph);
        std::vector<std::int32_t> rows;
        for (std::int32_t y = 10; y < 140; ++y)
            if (picture->At(46, y) == 0xff8d8d8d)
                rows.push_back(y - 10);
        return rows;
    }

    ViewBench bench;
    boost::shared_ptr<ZElement> input = bench.Add("inputPitch", ZElement::ZFLOAT);
    boost::shared_ptr<ZElement> output = bench.Add("outputPitch", ZElement::ZFLOAT);
    boost::shared_ptr<ZElement> axisType = bench.Add("axisType", ZElement::ZDISCRETE);
    boost::shared_ptr<ZElement> range = bench.Add("sourceType", ZElement::ZDISCRETE);
    boost::shared_ptr<Counted<OpenGraph>> graph = bench.Make<OpenGraph>(kGraphTag, 360, 160);
};

TEST_F(KestrunePitchGraphTest, KeepsTheLast150FramesAndRepaintsAtEach)
{
    EXPECT_EQ(input->GetObserverCount() + output->GetObserverCount(), 0) << "pitches are polled";
    const int before = graph->repaints;
    Sing(100.0f, 110.0f, 1);
    Sing(200.0f, 220.0f, 149);
    EXPECT_EQ(graph->mInputHistory.front(), 100.0f);
    Sing(300.0f, 330.0f, 1);
    EXPECT_EQ(graph->mInputHistory.size(), 150u);
    EXPECT_EQ(graph->mInputHistory.front(), 200.0f);
    EXPECT_EQ(graph->mOutputHistory.back(), 330.0f);
    EXPECT_EQ(graph->repaints - before, 151) << "also while the pitch stays the same";
    EXPECT_EQ(graph->lastPart, graph->GetGraphFrame());
    Sing(std::numeric_limits<float>::infinity(), -1.0f, 1);
    EXPECT_EQ(graph->mInputHistory.back(), 0.0f);
}

TEST_F(KestrunePitchGraphTest, CurvesAndLabelsLineUpInEveryRange)
{
    const std::vector<std::pair<float, float>> ends{{73, 1300}, {73, 494},   {165, 1300},
                                                    {20, 330},  {330, 2500}, {10, 600}};
    for (const std::int32_t index : {-1, 0, 1, 2, 3, 4, 5}) {
        SCOPED_TRACE(index);
        range->SetDiscrete(index, false);
        bench.Tick();
        const auto [low, high] = ends[index < 0 ? 5 : static_cast<std::size_t>(index)];
        EXPECT_EQ(graph->FrequencyAt(0), high);
        EXPECT_NEAR(graph->FrequencyAt(130), low, 0.01f);
        EXPECT_EQ(graph->HeightOf(0.0f), 130) << "no voice lies at the bottom";
        for (const std::int32_t y : {0, 10, 65, 120}) {
            EXPECT_NEAR(graph->HeightOf(graph->FrequencyAt(y)), y, 1);
            Sing(graph->FrequencyAt(y), 0.0f, 150);
            EXPECT_NEAR(RowOf(*ViewBench::Paint(*graph), 200, kInputColor), y, 1);
        }
    }
    graph->SetVerticalScale(2.0f);
    graph->SetOrigin({0, 40});
    EXPECT_NEAR(graph->HeightOf(graph->FrequencyAt(60)), (60 + 80) / 2, 1);
}

TEST_F(KestrunePitchGraphTest, ShortHistoryGrowsFromTheRightInsideThePlot)
{
    Sing(300.0f, 300.0f, 30);
    auto picture = ViewBench::Paint(*graph);
    const std::int32_t start = 50 + 120 * 2;  // two pixels a frame
    EXPECT_EQ(RowOf(*picture, start - 2, kOutputColor), -1);
    EXPECT_GT(RowOf(*picture, start + 2, kOutputColor), 0);
    EXPECT_GT(RowOf(*picture, 347, kOutputColor), 0) << "up to the right edge";
    EXPECT_EQ(RowOf(*picture, start + 2, kInputColor), -1) << "the output lies on top";
    EXPECT_EQ(RowOf(*picture, 355, kOutputColor), -1) << "nothing outside the plot";
    Sing(1e30f, -1e30f, 20);
    picture = ViewBench::Paint(*graph);
    EXPECT_NE(picture->At(330, 9), kInputColor) << "nor above it";
}

TEST_F(KestrunePitchGraphTest, AxisHasTwelveRowsOfNotesOrRowsOfHertzByTheScale)
{
    using Rows = std::vector<std::int32_t>;
    EXPECT_EQ(Ticks(), (Rows{10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120}));
    axisType->SetDiscrete(1, false);
    bench.Tick();
    EXPECT_EQ(Ticks(), (Rows{21, 43, 65, 86, 108}));
    for (const auto& [scale, rows] : {std::pair{2.0f, 10u}, {0.0f, 0u}, {-3.0f, 0u}}) {
        graph->SetVerticalScale(scale);
        EXPECT_EQ(Ticks().size(), rows) << scale;
    }
}

TEST(ZGraphAxisViewTest, LabelsAreDecimalsOrMinutes)
{
    for (const auto& [attributes, value, label] :
         {std::tuple{"", -7.5f, "-7.50"},
          {"xaxisdecimalplaces=\"0\"", 7.4f, "7"},
          {"xaxisdecimalplaces=\"5000\"", 0.5f, "0.500000000"},
          {"xaxisstyle=\"minutes\"", 125.0f, "2:05"},
          {"xaxisstyle=\"minutes\"", -59.6f, "-1:00"}})
    {
        const ZGraphAxisView view(viewXml("<view " + std::string(attributes) + "></view>"),
                                  nullptr);
        EXPECT_EQ(view.XLabel(value).ToNarrow(), label);
    }
}

}  // namespace

}  // namespace orvane
