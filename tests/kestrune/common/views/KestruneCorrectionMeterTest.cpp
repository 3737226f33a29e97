// SPDX-License-Identifier: GPL-3.0-or-later
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

constexpr std::uint32_t kBar = 0xffffcc66;
constexpr ZRect kBarFrame{30, 0, 40, 270};

const char* const kMeterTag =
    "<view name=\"correctionMeter\"><element target=\"correctionMeter\"/>"
    "<rect name=\"bounds\" left=\"0\" top=\"0\" width=\"42\" height=\"270\"/>"
    "<rect name=\"meterframe\" left=\"30\" top=\"0\" width=\"10\" height=\"270\"/></view>";

class KestruneCorrectionMeterTest : public ::testing::Test
{
protected:
    using Meter = Counted<KestruneCorrectionMeter>;
    using Rows = std::pair<std::int32_t, std::int32_t>;

    KestruneCorrectionMeterTest() { cents->SetRange(-200.0f, 200.0f, true); }

    boost::shared_ptr<Meter> Make()
    {
        return bench.Make<KestruneCorrectionMeter>(kMeterTag, 42, 270);
    }
    /// First and last row of the bar, -1 without a bar.
    Rows BarOf(Meter& meter, float value)
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
                                      {1.0f, none},
                                      {1e30f, Rows(0, 134)},
                                      {-1000.0f, Rows(135, 269)},
                                      {Limits::quiet_NaN(), none},
                                      {Limits::infinity(), none}})
        EXPECT_EQ(BarOf(*meter, value), rows) << value;
    cents->SetRange(7.0f, 7.0f, true);
    EXPECT_EQ(BarOf(*meter, 7.0f), none) << "an empty range";
}

TEST_F(KestruneCorrectionMeterTest, ScaleHasTicksAndLabelsAtTheEndsAndTheMiddle)
{
    const auto picture = ViewBench::Paint(*Make());
    const auto hasInk = [&](const ZRect& rect) {
        bool found = false;
        for (std::int32_t y = rect.top; y < rect.bottom; ++y)
            for (std::int32_t x = rect.left; x < rect.right; ++x)
                found = found || picture->AlphaAt(x, y) > 128;
        return found;
    };
    for (const std::int32_t y : {1, 135, 269})
        EXPECT_TRUE(hasInk({25, y, 30, y + 1})) << y;
    for (const auto& [top, bottom] : {std::pair{0, 16}, {127, 144}, {254, 270}})
        EXPECT_TRUE(hasInk({0, top, 25, bottom})) << top;
    EXPECT_FALSE(hasInk({0, 20, 30, 120}));
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
    const auto other = Make();
    EXPECT_EQ(cents->GetObserverCount(), 0) << "it is polled";
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    for (const float value : {0.0f, 12.0f, 12.0f, kNaN, kNaN}) {
        cents->SetZFloat(value, true);
        meter->IdleTick();
    }
    EXPECT_EQ(meter->repaints, 2);
    EXPECT_EQ(meter->lastPart, kBarFrame);
    cents->SetZFloat(12.0f, true);
    other->IdleTick();
    EXPECT_EQ(other->repaints, 1) << "each meter has its own last value";
    EXPECT_EQ(ViewBench::Paint(*meter, kBarFrame)->Ink(), kBarFrame)
        << "a repaint of the bar leaves the scale as it is";
    expectZException(ZException::kNotImplemented, "Implement ExtractHeader\n",
                     [&] { (void)meter->ExtractHeader(); });
}

}  // namespace

}  // namespace orvane
