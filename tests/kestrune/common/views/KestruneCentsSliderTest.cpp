// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneCentsSlider.h"

#include "support/ExpectZException.h"
#include "zlib/common/views/ViewCanvas.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane
{

namespace
{

/// 130 pixels wide with a thumb size of 15: over a range of 200 cents a pixel is two cents.
class KestruneCentsSliderTest : public ViewCanvasTest
{
protected:
    boost::shared_ptr<KestruneCentsSlider> MakeSlider(const std::string& attributes)
    {
        auto slider = Make<KestruneCentsSlider>("thumbsize=\"15\" thumbheight=\"16\" " + attributes,
                                                "", "width=\"130\" height=\"20\"");
        slider->SetThumbBitmap(plainBitmap(1, 1));
        slider->AttachToElement(element);
        return slider;
    }

    const boost::shared_ptr<ZElement> element = MakeFloat(-100.0f, 100.0f, 0.0f);
};

TEST_F(KestruneCentsSliderTest, SnapsToSemitonesUnlessControlIsHeld)
{
    const auto slider = MakeSlider("");
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

TEST_F(KestruneCentsSliderTest, PaintsLabelsBelowItsMarksAndRefusesToBeVertical)
{
    constexpr ZRect kLabels{0, 10, 130, 20};
    const auto labelled = [&](const char* attributes) {
        Paint(*MakeSlider(attributes));
        int pixels = 0;
        for (std::int32_t x = kLabels.left; x < kLabels.right; ++x)
            for (std::int32_t y = kLabels.top; y < kLabels.bottom; ++y)
                pixels += (canvas->At(x, y) & 0xffffffu) == 0x333333u ? 1 : 0;
        return pixels > 0;
    };
    EXPECT_TRUE(labelled("numberscalemarks=\"3\" drawscaletext=\"true\""));
    EXPECT_FALSE(labelled("numberscalemarks=\"3\""));
    expectZException("No Support for Vertical KestruneCentsSlider",
                     [&] { Paint(*MakeSlider("orient=\"vertical\"")); });
}

}  // namespace

}  // namespace orvane
