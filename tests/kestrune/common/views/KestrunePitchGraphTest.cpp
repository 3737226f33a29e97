// SPDX-License-Identifier: GPL-3.0-or-later
// The scrolling graph of pitches, and the axes that it stands between.

#include "kestrune/common/views/KestrunePitchGraph.h"

#include "kestrune/common/views/ViewBench.h"

#include <gtest/gtest.h>

#include <cmath>
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

/// Rows of the plot, from its top, in which a pixel of the column has the colour.
std::pair<std::int32_t, std::int32_t> rowsOf(const Picture& picture, std::int32_t x,
                                             std::uint32_t color)
{
    std::pair<std::int32_t, std::int32_t> rows{-1, -1};
    for (std::int32_t y = 10; y < 140; ++y) {
        if (picture.At(x, y) != color)
            continue;
        rows.first = rows.first < 0 ? y - 10 : rows.first;
        rows.second = y - 10;
    }
    return rows;
}

class KestrunePitchGraphTest : public ::testing::Test
{
protected:
    using Graph = Counted<KestrunePitchGraph>;

    boost::shared_ptr<Graph> Make() { return bench.Make<KestrunePitchGraph>(kGraphTag, 360, 160); }
    void Sing(Graph& graph, float in, float out, int frames)
    {
        input->SetZFloat(in, true);
        output->SetZFloat(out, true);
        for (int i = 0; i < frames; ++i)
            graph.IdleTick();
    }

    ViewBench bench;
    boost::shared_ptr<ZElement> input = bench.Add("inputPitch", ZElement::ZFLOAT);
    boost::shared_ptr<ZElement> output = bench.Add("outputPitch", ZElement::ZFLOAT);
    boost::shared_ptr<ZElement> axisType = bench.Add("axisType", ZElement::ZDISCRETE);
    boost::shared_ptr<ZElement> range = bench.Add("sourceType", ZElement::ZDISCRETE);
};

TEST_F(KestrunePitchGraphTest, KeepsTheLast150FramesAndScrollsAtEach)
{
    const auto graph = Make();
    EXPECT_EQ(input->GetObserverCount() + output->GetObserverCount(), 0);
    const int before = graph->repaints;
    Sing(*graph, 100.0f, 110.0f, 1);
    Sing(*graph, 200.0f, 220.0f, 149);
    EXPECT_EQ(graph->GetInputHistory().front(), 100.0f);
    Sing(*graph, 300.0f, 330.0f, 1);
    EXPECT_EQ(graph->GetInputHistory().size(), 150u);
    EXPECT_EQ(graph->GetInputHistory().front(), 200.0f);
    EXPECT_EQ(graph->GetOutputHistory().back(), 330.0f);
    EXPECT_EQ(graph->repaints - before, 151) << "there is no test for change";
    EXPECT_EQ(graph->lastPart, graph->GetGraphFrame());
    Sing(*graph, std::numeric_limits<float>::infinity(), -1.0f, 1);
    EXPECT_EQ(graph->GetInputHistory().back(), 0.0f);
}

TEST_F(KestrunePitchGraphTest, CurvesAndLabelsLineUpInEveryRange)
{
    const std::vector<std::pair<float, float>> ends{{73, 1300}, {73, 494},   {165, 1300},
                                                    {20, 330},  {330, 2500}, {10, 600}};
    const auto graph = Make();
    for (const std::int32_t index : {-1, 0, 1, 2, 3, 4, 5}) {
        SCOPED_TRACE(index);
        range->SetDiscrete(index, false);
        bench.Tick();
        EXPECT_EQ(std::pair(graph->GetMinFrequency(), graph->GetMaxFrequency()),
                  ends[index < 0 ? 5 : static_cast<std::size_t>(index)]);
        for (const std::int32_t y : {0, 10, 65, 120}) {
            EXPECT_NEAR(graph->HeightOf(graph->FrequencyAt(y)), y, 1);
            Sing(*graph, graph->FrequencyAt(y), 0.0f, 150);
            const auto rows = rowsOf(ViewBench::Paint(*graph), 200, kInputColor);
            EXPECT_NEAR((rows.first + rows.second) / 2, y, 1);
        }
        EXPECT_EQ(graph->FrequencyAt(0), graph->GetMaxFrequency());
        EXPECT_EQ(graph->HeightOf(0.0f), 130) << "no voice lies at the bottom";
    }
    graph->SetVerticalScale(2.0f);
    graph->SetOrigin({0, 40});
    EXPECT_NEAR(graph->HeightOf(graph->FrequencyAt(60)), (60 + 80) / 2, 1);
}

TEST_F(KestrunePitchGraphTest, AShortHistoryGrowsFromTheRightInsideThePlot)
{
    const auto graph = Make();
    Sing(*graph, 300.0f, 300.0f, 30);
    auto picture = ViewBench::Paint(*graph);
    const std::int32_t start = 50 + 120 * 2;  // two pixels a frame
    EXPECT_EQ(rowsOf(picture, start - 2, kOutputColor).first, -1);
    EXPECT_GT(rowsOf(picture, start + 2, kOutputColor).first, 0);
    EXPECT_GT(rowsOf(picture, 347, kOutputColor).first, 0) << "up to the right edge";
    EXPECT_EQ(rowsOf(picture, start + 2, kInputColor).first, -1) << "the output lies on top";
    EXPECT_EQ(rowsOf(picture, 355, kOutputColor).first, -1) << "nothing beyond the plot";
    Sing(*graph, 1e30f, -1e30f, 20);
    picture = ViewBench::Paint(*graph);
    EXPECT_EQ(rowsOf(picture, 330, kInputColor).first, -1) << "nor above it";
    EXPECT_NE(picture.At(330, 9), kInputColor);
}

TEST_F(KestrunePitchGraphTest, AxesHaveTicksAndLabelsOfNotesOrHertz)
{
    const auto graph = Make();
    const auto tickAt = [](const Picture& picture, std::int32_t y) {
        return picture.At(46, y) == 0xff8d8d8d && picture.At(46, y + 1) == 0xffbebebe;
    };
    const auto notes = ViewBench::Paint(*graph);
    for (std::int32_t k = 1; k <= 12; ++k)
        EXPECT_TRUE(tickAt(notes, 10 + 10 * k)) << k;
    axisType->SetDiscrete(1, false);
    bench.Tick();
    EXPECT_FALSE(graph->HasNoteAxis());
    const auto hertz = ViewBench::Paint(*graph);
    for (std::int32_t k = 1; k <= 5; ++k)
        EXPECT_TRUE(tickAt(hertz, 10 + 130 * k / 6)) << k;
    EXPECT_FALSE(tickAt(hertz, 20));
    EXPECT_NE(notes.pixels, hertz.pixels);
    graph->SetVerticalScale(2.0f);
    const auto zoomed = ViewBench::Paint(*graph);
    for (std::int32_t k = 1; k <= 10; ++k)
        EXPECT_TRUE(tickAt(zoomed, 10 + 130 * k / 11)) << k;
}

TEST_F(KestrunePitchGraphTest, AbsurdScalesAndFramesAreNoTrouble)
{
    for (const float scale : {0.0f, -3.0f, 1e38f, std::numeric_limits<float>::quiet_NaN()}) {
        const auto graph = Make();
        Sing(*graph, 200.0f, 300.0f, 3);
        graph->SetVerticalScale(scale);
        graph->SetHorizontalScale(scale);
        ViewBench::Paint(*graph);
        axisType->SetDiscrete(1, false);
        bench.Tick();
        ViewBench::Paint(*graph);
    }
    for (const char* frame : {"left=\"0\" top=\"0\" width=\"0\" height=\"0\"",
                              "left=\"-9\" top=\"-9\" width=\"-5\" height=\"7\"",
                              "left=\"0\" top=\"0\" width=\"2000000\" height=\"2000000\""})
    {
        const std::string tag = std::string("<view xaxisnumticks=\"2000000000\">") +
                                "<rect name=\"bounds\" left=\"0\" top=\"0\" width=\"30\" "
                                "height=\"30\"/><rect name=\"graphframe\" " +
                                frame + "/></view>";
        const auto graph = bench.Make<KestrunePitchGraph>(tag, 30, 30);
        graph->IdleTick();
        ViewBench::Paint(*graph);
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
        const ZGraphAxisView view(tagOf("<view " + std::string(attributes) + "></view>"), nullptr);
        EXPECT_EQ(view.XLabel(value).ToNarrow(), label);
    }
}

}  // namespace

}  // namespace orvane
