#include "zlib/ViewCanvas.h"
#include "zlib/common/ZMetalSlider.h"

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

// The product's slider: 110 wide with a thumb size of 15, so that the thumb's picture of 33 by 20
// travels over 80 pixels.
constexpr const char* kHorizontal =
    R"(orient="horizontal" thumbsize="15" thumbheight="16" nudgeamount="0")";
constexpr const char* kVertical = R"(orient="vertical" thumbsize="10" thumbheight="16")";

class ZSliderTest : public ViewCanvasTest
{
protected:
    boost::shared_ptr<ZMetalSlider>
    MakeSlider(const boost::shared_ptr<ZElement>& element,
               const std::string& attributes = kHorizontal,
               const std::string& size = "width=\"110\" height=\"20\"")
    {
        auto slider = Make<ZMetalSlider>(attributes, "", size);
        slider->SetThumbBitmap(plainBitmap(33, 20));
        slider->AttachToElement(element);
        return slider;
    }
};

TEST_F(ZSliderTest, TheThumbRunsOverItsTrackAndNeverBeyond)
{
    const auto element = MakeFloat(0.0f, 200.0f, 0.0f);
    const auto slider = MakeSlider(element);
    EXPECT_EQ(slider->GetTrackLength(), 80);
    const auto leftAt = [&](float value) {
        element->SetZFloat(value, true);
        return slider->GetThumbRect().left;
    };
    EXPECT_EQ(leftAt(0.0f), 0);
    EXPECT_EQ(leftAt(101.0f), 40) << "40.4 is cut";
    EXPECT_EQ(leftAt(200.0f), 80);
    EXPECT_EQ(leftAt(-50.0f), 0) << "elements take values beyond their range";
    EXPECT_EQ(leftAt(900.0f), 80);
    EXPECT_EQ(slider->GetThumbRect(), (ZRect{80, 0, 113, 20}));
}

TEST_F(ZSliderTest, APressBesideTheThumbBringsItsMiddleThereAndOneOnItLeavesIt)
{
    const auto element = MakeFloat(0.0f, 80.0f, 0.0f);
    const auto slider = MakeSlider(element);
    slider->MouseDown({56, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 40.0f) << "at once; half of 33 is 16";
    EXPECT_TRUE(slider->HasMouseCapture());
    slider->MouseUp({56, 5}, ZView::kMouseButton);
    EXPECT_FALSE(slider->HasMouseCapture());

    slider->MouseDown({73, 20}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 40.0f) << "the edges belong to the thumb";
    slider->MouseMoved({83, 20}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 50.0f);
    slider->MouseMoved({10000, 20}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 80.0f);
    slider->MouseUp({-10000, 20}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 0.0f) << "the release counts as a move";
    slider->MouseUp({60, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 0.0f) << "a release that follows no press moves nothing";
}

TEST_F(ZSliderTest, AVerticalSliderHasItsMaximumAtTheTop)
{
    const auto element = MakeFloat(-1.0f, 1.0f, 1.0f);
    const auto slider = MakeSlider(element, kVertical, "width=\"20\" height=\"120\"");
    EXPECT_EQ(slider->GetThumbRect(), (ZRect{0, 0, 33, 20}));
    slider->MouseDown({5, 110}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), -1.0f);
    EXPECT_EQ(slider->GetThumbRect().top, 100);
    slider->MouseMoved({5, 60}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 0.0f);
}

TEST_F(ZSliderTest, AltBringsTheDefaultBackOnReleaseAndNothingBefore)
{
    const auto element = MakeFloat(0.0f, 80.0f, 10.0f);
    element->SetZFloatDefault(25.0f);
    const auto slider = MakeSlider(element);
    slider->MouseDown({56, 5}, ZView::kMouseButton | ZView::kMouseAlt);
    EXPECT_EQ(element->GetZFloat(), 10.0f);
    EXPECT_FALSE(slider->HasMouseCapture());
    slider->MouseUp({56, 5}, ZView::kMouseButton | ZView::kMouseAlt);
    EXPECT_EQ(element->GetZFloat(), 25.0f);
}

TEST_F(ZSliderTest, ANotchOfTheWheelIsAPercentAndStaysInTheRange)
{
    const auto element = MakeFloat(0.0f, 200.0f, 197.0f);
    const auto slider = MakeSlider(element);
    slider->MouseWheel({5, 5}, 0, 1, 1);
    EXPECT_EQ(element->GetZFloat(), 199.0f);
    slider->MouseWheel({5, 5}, 0, 1, 3);
    EXPECT_EQ(element->GetZFloat(), 200.0f);
    slider->MouseWheel({5, 5}, 0, 0, 50);
    EXPECT_EQ(element->GetZFloat(), 100.0f) << "the other axis counts the other way";
}

TEST_F(ZSliderTest, NudgesAreCoarseOnWideRangesAndRefusedBeyondThem)
{
    const auto element = MakeFloat(0.0f, 100.0f, 99.5f);
    const auto slider = MakeSlider(element);
    slider->Nudge(1);
    EXPECT_EQ(element->GetZFloat(), 99.5f);
    slider->Nudge(-1);
    EXPECT_EQ(element->GetZFloat(), 98.5f);
    EXPECT_EQ(MakeSlider(MakeFloat(0.0f, 99.0f, 0.0f))->GetNudgeAmount(), 0.1f);
    EXPECT_EQ(MakeSlider(element, R"(nudgeamount="7")")->GetNudgeAmount(), 7.0f);
}

TEST_F(ZSliderTest, ItFollowsTheElementAndItsRangeAndLetsBothGo)
{
    const auto element = MakeFloat(0.0f, 80.0f, 10.0f);
    auto slider = MakeSlider(element);
    app.ProcessQueue();
    element->SetRange(0.0f, 160.0f, true);
    element->SetZFloat(160.0f, false);
    Tell(*element);
    EXPECT_EQ(slider->Range(), 160.0f);
    EXPECT_EQ(slider->GetLastValue(), 160.0f);
    EXPECT_EQ(slider->GetThumbRect().left, 80);
    slider.reset();
    EXPECT_EQ(element->GetObserverCount(), 0);
}

TEST_F(ZSliderTest, WithoutAnElementOrRoomNothingMovesAndNothingFails)
{
    const auto lone = MakeSlider(nullptr);
    lone->MouseDown({50, 5}, ZView::kMouseButton);
    EXPECT_FALSE(lone->HasMouseCapture());
    lone->MouseUp({50, 5}, ZView::kMouseButton | ZView::kMouseAlt);
    lone->MouseWheel({5, 5}, 0, 1, 1);
    lone->Nudge(1);
    Paint(*lone);

    const auto element = MakeFloat(3.0f, 3.0f, 3.0f);
    const auto narrow = MakeSlider(element, kHorizontal, "width=\"20\" height=\"20\"");
    narrow->MouseDown({100, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 3.0f);
    EXPECT_EQ(narrow->GetThumbRect().left, 0);
}

TEST_F(ZSliderTest, TheGrooveIsBlackWithItsLightBelow)
{
    const auto slider = MakeSlider(MakeFloat(0.0f, 1.0f, 0.0f));
    slider->SetThumbBitmap(plainBitmap(1, 1));
    Paint(*slider);
    EXPECT_EQ(canvas->At(50, 8), 0xff000000u);
    EXPECT_NEAR(canvas->At(50, 10) & 0xffu, 182, 2) << "the lower half of its line";
    EXPECT_EQ(canvas->AlphaAt(50, 5), 0u);
    EXPECT_EQ(canvas->AlphaAt(10, 8), 0u) << "the groove begins where the thumb's middle does";
    EXPECT_EQ(canvas->AlphaAt(99, 8), 0u);
}

TEST_F(ZSliderTest, MarksStandEvenlyFromEndToEndAndTellTheirValues)
{
    const auto slider = MakeSlider(MakeFloat(-50.0f, 50.0f, 0.0f));
    slider->SetScaleMarkCount(5);
    EXPECT_EQ(slider->GetMarkPosition(0), 15);
    EXPECT_EQ(slider->GetMarkPosition(2), 54);
    EXPECT_EQ(slider->GetMarkPosition(4), 94);
    slider->SetThumbBitmap(plainBitmap(1, 1));
    Paint(*slider);
    EXPECT_EQ(canvas->AlphaAt(54, 15), 117u);
    EXPECT_EQ(canvas->AlphaAt(55, 15), 28u);
    EXPECT_EQ(canvas->AlphaAt(53, 15), 0u);
    EXPECT_EQ(shortNumber(-12.5f), "-12.5");
    EXPECT_EQ(shortNumber(-0.001f), "0");
    slider->SetScaleMarkCount(1);
    Paint(*slider);
    EXPECT_EQ(canvas->AlphaAt(15, 15), 117u) << "a single mark stands at the beginning";
    slider->SetScaleMarkCount(1'000'000'000);
    Paint(*slider);
}

}  // namespace

}  // namespace orvane
