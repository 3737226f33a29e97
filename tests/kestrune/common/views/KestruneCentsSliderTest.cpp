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

/// 130 by 20 with a thumb size of 15: over a range of 200 a pixel is two cents.
class KestruneCentsSliderTest : public ViewCanvasTest
{
protected:
    boost::shared_ptr<KestruneCentsSlider> MakeSlider(const boost::shared_ptr<ZElement>& element,
                                                      const std::string& attributes = "")
    {
        auto slider = Make<KestruneCentsSlider>("thumbsize=\"15\" thumbheight=\"16\" " + attributes,
                                                "", "width=\"130\" height=\"20\"");
        slider->SetThumbBitmap(plainBitmap(1, 1));
        slider->AttachToElement(element);
        return slider;
    }
};

TEST_F(KestruneCentsSliderTest, ItSnapsToSemitonesDownBelowZeroAndFreesItselfWithControl)
{
    const auto element = MakeFloat(-100.0f, 100.0f, 0.0f);
    const auto slider = MakeSlider(element);
    const auto written = [&](std::int32_t cents, std::uint32_t mods) {
        slider->TrackMouse({50 + cents / 2, 5}, mods);
        return element->GetZFloat();
    };
    EXPECT_EQ(written(60, ZView::kMouseButton), 100.0f);
    EXPECT_EQ(written(50, ZView::kMouseButton), 100.0f) << "a half goes up";
    EXPECT_EQ(written(40, ZView::kMouseButton), 0.0f);
    EXPECT_EQ(written(-20, ZView::kMouseButton), -100.0f);
    EXPECT_EQ(written(900, ZView::kMouseButton), 100.0f);
    EXPECT_EQ(written(-20, ZView::kMouseButton | ZView::kMouseControl), -20.0f);
}

TEST_F(KestruneCentsSliderTest, MarksAreEngravedWithTheirSemitonesBelow)
{
    const auto element = MakeFloat(-200.0f, 200.0f, 0.0f);
    Paint(*MakeSlider(element, "numberscalemarks=\"3\""));
    EXPECT_EQ(canvas->AlphaAt(64, 19), 117u) << "down to the edge";
    EXPECT_EQ(canvas->AlphaAt(65, 19), 28u);
    Paint(*MakeSlider(element, "numberscalemarks=\"3\" drawscaletext=\"true\""));
    const auto hasText = [&](std::int32_t left) {
        for (std::int32_t x = left; x < left + 6; ++x)
            for (std::int32_t y = 10; y < 20; ++y)
                if ((canvas->At(x, y) & 0xffffffu) == 0x333333u)
                    return true;
        return false;
    };
    EXPECT_TRUE(hasText(61)) << "the 0 in the middle";
    EXPECT_TRUE(hasText(8) && hasText(109));
    EXPECT_FALSE(hasText(35));
}

TEST_F(KestruneCentsSliderTest, AVerticalOneFailsWhenItIsPainted)
{
    const auto slider = MakeSlider(MakeFloat(-100.0f, 100.0f, 0.0f), "orient=\"vertical\"");
    expectZException("No Support for Vertical KestruneCentsSlider", [&] { Paint(*slider); });
    expectZException(ZException::kNotImplemented, "Implement ExtractBody\n",
                     [&] { slider->ExtractBody(nullptr); });
}

}  // namespace

}  // namespace orvane
