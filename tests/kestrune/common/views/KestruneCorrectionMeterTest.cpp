// SPDX-License-Identifier: GPL-3.0-or-later
// The bar that tells by how many cents the voice is bent.

#include "kestrune/common/views/KestruneCorrectionMeter.h"

#include "kestrune/common/views/ViewBench.h"
#include "support/ExpectZException.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::uint32_t kGround = 0xff333333;
constexpr std::uint32_t kBar = 0xffffcc66;

const char* const kMeterTag =
    "<view name=\"correctionMeter\"><element target=\"correctionMeter\"/>"
    "<rect name=\"bounds\" left=\"0\" top=\"0\" width=\"42\" height=\"270\"/>"
    "<rect name=\"meterframe\" left=\"30\" top=\"0\" width=\"10\" height=\"270\"/></view>";

class KestruneCorrectionMeterTest : public ::testing::Test
{
protected:
    using Meter = Counted<KestruneCorrectionMeter>;

    KestruneCorrectionMeterTest() { cents->SetRange(-200.0f, 200.0f, true); }

    boost::shared_ptr<Meter> Make(const char* tag = kMeterTag)
    {
        return bench.Make<KestruneCorrectionMeter>(tag, 42, 270);
    }
    /// First and last row of the bar, -1 for none.
    std::pair<std::int32_t, std::int32_t> BarOf(Meter& meter, float value)
    {
        cents->SetZFloat(value, true);
        const auto picture = ViewBench::Paint(meter);
        std::pair<std::int32_t, std::int32_t> rows{-1, -1};
        for (std::int32_t y = 0; y < 270; ++y) {
            EXPECT_EQ(picture.At(30, y), kGround) << "a pixel inside the frame on each side";
            EXPECT_EQ(picture.At(39, y), kGround);
            EXPECT_EQ(picture.At(31, y), picture.At(38, y));
            if (picture.At(31, y) != kBar)
                continue;
            rows.first = rows.first < 0 ? y : rows.first;
            rows.second = y;
        }
        return rows;
    }

    ViewBench bench;
    boost::shared_ptr<ZElement> cents = bench.Add("correctionMeter", ZElement::ZFLOAT);
};

TEST_F(KestruneCorrectionMeterTest, TheBarRisesAndFallsFromTheMiddle)
{
    const auto meter = Make();
    using Limits = std::numeric_limits<float>;
    using Rows = std::pair<std::int32_t, std::int32_t>;
    const Rows none(-1, -1);
    // Cut to whole pixels, and by the view's edges.
    for (const auto& [value, rows] : {std::pair{0.0f, none},
                                      {200.0f, Rows(0, 134)},
                                      {-200.0f, Rows(135, 269)},
                                      {100.0f, Rows(135 - 67, 134)},
                                      {-100.0f, Rows(135, 135 + 66)},
                                      {1.0f, none},
                                      {1e30f, Rows(0, 134)},
                                      {-1000.0f, Rows(135, 269)},
                                      {Limits::quiet_NaN(), none},
                                      {Limits::infinity(), none}})
        EXPECT_EQ(BarOf(*meter, value), rows) << value;
    cents->SetRange(7.0f, 7.0f, true);
    EXPECT_EQ(BarOf(*meter, 7.0f), none) << "a range of nothing";
}

TEST_F(KestruneCorrectionMeterTest, TicksAndLabelsStandAtTheEndsAndTheMiddle)
{
    const auto picture = ViewBench::Paint(*Make());
    for (const std::int32_t y : {1, 135, 269}) {
        for (std::int32_t x = 25; x < 30; ++x) {
            EXPECT_EQ(picture.At(x, y), 0xffe1e1e1u) << x << ", " << y;
            EXPECT_TRUE(y == 269 || picture.At(x, y + 1) == 0xff585858u) << x << ", " << y;
        }
    }
    for (const auto& [top, bottom] : {std::pair{0, 16}, {127, 144}, {254, 270}}) {
        bool inked = false;
        for (std::int32_t y = top; y < bottom; ++y)
            for (std::int32_t x = 0; x < 25; ++x)
                inked = inked || picture.AlphaAt(x, y) > 128;
        EXPECT_TRUE(inked) << top;
    }
    EXPECT_EQ(picture.AlphaAt(20, 60), 0u);
}

TEST_F(KestruneCorrectionMeterTest, AsksForARepaintOfTheBarWhenTheValueIsAnother)
{
    const auto meter = Make();
    const auto twin = Make();
    EXPECT_EQ(cents->GetObserverCount(), 0) << "it looks, and does not listen";
    for (const float value : {0.0f, 12.0f, 12.0f, std::numeric_limits<float>::quiet_NaN(),
                              std::numeric_limits<float>::quiet_NaN()})
    {
        cents->SetZFloat(value, true);
        meter->IdleTick();
    }
    EXPECT_EQ(meter->repaints, 2);
    EXPECT_EQ(meter->lastPart, (ZRect{30, 0, 40, 270}));
    cents->SetZFloat(12.0f, true);
    twin->IdleTick();
    EXPECT_EQ(twin->repaints, 1) << "each meter has a memory of its own";

    const auto canvas = boost::make_shared<Canvas>(42, 270);
    meter->SetContext(canvas);
    meter->Draw(meter->GetMeterFrame());
    EXPECT_EQ(canvas->Ink(), (ZRect{30, 0, 40, 270})) << "the bar alone leaves the scale as it is";
    expectZException(ZException::kNotImplemented, "Implement ExtractHeader\n",
                     [&] { (void)meter->ExtractHeader(); });
    expectZException(ZException::kNotImplemented, "Implement ExtractBody\n",
                     [&] { meter->ExtractBody(nullptr); });
}

TEST_F(KestruneCorrectionMeterTest, StandsWithoutElementAndFrame)
{
    const auto meter = Make("<view><rect name=\"bounds\" left=\"0\" top=\"0\" width=\"42\" "
                            "height=\"270\"/></view>");
    EXPECT_EQ(meter->GetMeterFrame(), (ZRect{0, 0, 42, 270}));
    meter->IdleTick();
    EXPECT_EQ(meter->repaints, 0);
    ViewBench::Paint(*meter);
}

}  // namespace

}  // namespace orvane
