// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMetalSlider.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ViewCanvas.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane
{

namespace
{

// The product's slider: 110 wide with a thumb size of 15, so that the thumb's picture of 33 by 20
// travels over 80 pixels.
constexpr const char* kHorizontal = R"(orient="horizontal" thumbsize="15" thumbheight="16")";
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
    // 101 is at 40.4, which is cut; elements take values beyond their range.
    for (const auto& [value, left] : {std::pair{0.0f, 0},
                                      {101.0f, 40},
                                      {200.0f, 80},
                                      {-50.0f, 0},
                                      {std::numeric_limits<float>::quiet_NaN(), 0},
                                      {900.0f, 80}})
    {
        element->SetZFloat(value, true);
        EXPECT_EQ(slider->GetThumbRect(), (ZRect{left, 0, left + 33, 20})) << value;
    }
}

TEST_F(ZSliderTest, APressBesideTheThumbBringsItsMiddleThereAndOneOnItLeavesIt)
{
    const auto element = MakeFloat(0.0f, 80.0f, 0.0f);
    const auto slider = MakeSlider(element);
    slider->MouseDown({56, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 40.0f) << "at once; half of 33 is 16";
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
    EXPECT_EQ(slider->GetThumbRect().top, 0);
    slider->MouseDown({5, 110}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), -1.0f);
    EXPECT_EQ(slider->GetThumbRect().top, 100);
    slider->MouseMoved({5, 60}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 0.0f);
}

TEST_F(ZSliderTest, WheelAndNudgesStepAndStayInTheRange)
{
    const auto element = MakeFloat(0.0f, 200.0f, 197.0f);
    const auto slider = MakeSlider(element);
    const auto after = [&](std::int32_t axis, std::int32_t notches) {
        slider->MouseWheel({5, 5}, 0, axis, notches);
        return element->GetZFloat();
    };
    EXPECT_EQ(after(1, 1), 199.0f) << "a percent a notch";
    EXPECT_EQ(after(1, 3), 200.0f);
    EXPECT_EQ(after(0, 50), 100.0f) << "the other axis counts the other way";
    element->SetZFloat(199.5f, true);
    slider->Nudge(1);
    EXPECT_EQ(element->GetZFloat(), 199.5f) << "a step that leaves the range is none";
    slider->Nudge(-1);
    EXPECT_EQ(element->GetZFloat(), 198.5f);
    EXPECT_EQ(MakeSlider(MakeFloat(0.0f, 99.0f, 0.0f))->GetNudgeAmount(), 0.1f);
    EXPECT_EQ(MakeSlider(element, R"(nudgeamount="7")")->GetNudgeAmount(), 7.0f);
}

TEST_F(ZSliderTest, ItFollowsTheElementAndItsRangeAndLetsBothGo)
{
    const auto element = MakeFloat(0.0f, 80.0f, 10.0f);
    const auto slider = MakeSlider(element);
    app.ProcessQueue();
    element->SetRange(0.0f, 160.0f, true);
    element->SetZFloat(160.0f, false);
    Tell(*element);
    EXPECT_EQ(slider->GetThumbRect().left, 80);
    EXPECT_EQ(slider->GetLastValue(), 160.0f);
    slider->MouseDown({85, 5}, ZView::kMouseButton);
    slider->DetachFromElements();
    EXPECT_EQ(element->GetObserverCount(), 0);
    slider->MouseUp({20, 5}, ZView::kMouseButton);
    EXPECT_FALSE(slider->HasMouseCapture()) << "whose element went in the middle of a drag";
    EXPECT_EQ(element->GetZFloat(), 160.0f);
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
    lone->SetActionMessage(boost::make_shared<ZMessage>(ZDISABLE));
    lone->SendAction();
    EXPECT_FALSE(lone->IsEnabled()) << "the action is its own to take";

    const auto element = MakeFloat(3.0f, 3.0f, 3.0f);
    const auto narrow = MakeSlider(element, kHorizontal, "width=\"20\" height=\"20\"");
    narrow->MouseDown({100, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 3.0f);
    EXPECT_EQ(narrow->GetThumbRect().left, 0);
}

TEST_F(ZSliderTest, TheGrooveIsBlackWithItsLightBelowAndMarksStandEvenlyAlongIt)
{
    const auto slider = MakeSlider(MakeFloat(-50.0f, 50.0f, 0.0f));
    slider->SetThumbBitmap(plainBitmap(1, 1));
    Paint(*slider);
    EXPECT_EQ(canvas->At(50, 8), 0xff000000u);
    EXPECT_NEAR(canvas->At(50, 10) & 0xffu, 182, 2) << "the lower half of its line";
    EXPECT_EQ(canvas->AlphaAt(50, 5), 0u);
    EXPECT_EQ(canvas->AlphaAt(10, 8), 0u) << "the groove begins where the thumb's middle does";
    EXPECT_EQ(canvas->AlphaAt(99, 8), 0u);

    slider->SetScaleMarkCount(5);
    Paint(*slider);
    for (const std::int32_t x : {15, 54, 94}) {
        EXPECT_EQ(canvas->AlphaAt(x, 15), 117u) << x;
        EXPECT_EQ(canvas->AlphaAt(x + 1, 15), 28u) << x;
    }
    slider->SetThumbHeight(6);
    Paint(*slider);
    EXPECT_EQ(canvas->AlphaAt(54, 8), 117u) << "marks begin below the groove";
    slider->SetScaleMarkCount(1);
    Paint(*slider);
    EXPECT_EQ(canvas->AlphaAt(15, 17), 117u) << "a single mark stands at the beginning";
    slider->SetScaleMarkCount(1'000'000'000);
    Paint(*slider);
    EXPECT_EQ(shortNumber(-12.5f), "-12.5");
    EXPECT_EQ(shortNumber(-0.001f), "0");
}

}  // namespace

}  // namespace orvane
