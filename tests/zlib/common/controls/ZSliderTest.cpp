// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMetalSlider.h"
#include "zlib/common/views/ViewCanvas.h"

using namespace orvane;

namespace
{

// The product's slider: 110 pixels wide with a thumb size of 15, so that the thumb's picture of
// 33 by 20 pixels travels over 80.
constexpr const char* kHorizontal = R"(orient="horizontal" thumbsize="15" thumbheight="16")";
constexpr const char* kVertical = R"(orient="vertical" thumbsize="10" thumbheight="16")";

struct ZSliderTest : ViewCanvasTest
{
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

TEST_F(ZSliderTest, ThumbStaysOnItsTrackForAnyValue)
{
    const auto element = MakeFloat(0.0f, 200.0f, 0.0f);
    const auto slider = MakeSlider(element);
    // 101 lies at 40.4 pixels, which is truncated.
    for (const auto& [value, left] : {std::pair{101.0f, 40},
                                      {200.0f, 80},
                                      {-50.0f, 0},
                                      {std::numeric_limits<float>::quiet_NaN(), 0},
                                      {900.0f, 80}})
    {
        element->SetZFloat(value, true);
        EXPECT_EQ(slider->GetThumbRect(), (ZRect{left, 0, left + 33, 20})) << value;
    }
}

TEST_F(ZSliderTest, PressBesideTheThumbCentresItThere)
{
    const auto element = MakeFloat(0.0f, 80.0f, 0.0f);
    const auto slider = MakeSlider(element);
    slider->MouseDown({56, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 40.0f) << "half of 33 pixels is 16";
    slider->MouseUp({56, 5}, ZView::kMouseButton);
    EXPECT_FALSE(slider->HasMouseCapture());

    slider->MouseDown({73, 20}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 40.0f) << "edges belong to the thumb";
    slider->MouseMoved({83, 20}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 50.0f);
    slider->MouseMoved({10000, 20}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 80.0f);
    slider->MouseUp({-10000, 20}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 0.0f) << "the release counts as a move";
    slider->MouseUp({60, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 0.0f) << "a release without a press moves nothing";
}

TEST_F(ZSliderTest, DoubleClickAndAltClickRestoreTheDefault)
{
    const auto element = MakeFloat(0.0f, 80.0f, 0.0f);
    element->SetZFloatDefault(20.0f);
    const auto slider = MakeSlider(element);
    constexpr std::uint32_t kAlt = ZView::kMouseButton | ZView::kMouseAlt;
    slider->MouseDown({56, 5}, ZView::kMouseButton);
    slider->MouseUp({56, 5}, ZView::kMouseButton);
    slider->MouseDoubleClick({56, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 20.0f);
    slider->MouseUp({60, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 20.0f) << "a double click begins no drag";
    element->SetZFloat(40.0f, true);
    slider->MouseDown({5, 5}, kAlt);
    EXPECT_EQ(element->GetZFloat(), 40.0f) << "nothing happens at the press";
    slider->MouseUp({5, 5}, kAlt);
    EXPECT_EQ(element->GetZFloat(), 20.0f);
}

TEST_F(ZSliderTest, VerticalSliderHasItsMaximumAtTheTop)
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

TEST_F(ZSliderTest, WheelAndNudgeStepInsideTheRange)
{
    const auto element = MakeFloat(0.0f, 200.0f, 197.0f);
    const auto slider = MakeSlider(element);
    const auto after = [&](std::int32_t axis, std::int32_t notches) {
        slider->MouseWheel({5, 5}, 0, axis, notches);
        return element->GetZFloat();
    };
    EXPECT_EQ(after(1, 1), 199.0f) << "1 % for each notch";
    EXPECT_EQ(after(1, 3), 200.0f);
    EXPECT_EQ(after(0, 50), 100.0f) << "the other axis has the other sign";
    element->SetZFloat(199.5f, true);
    slider->Nudge(1);
    EXPECT_EQ(element->GetZFloat(), 199.5f) << "a step out of the range is not taken";
    slider->Nudge(-1);
    EXPECT_EQ(element->GetZFloat(), 198.5f);
}

TEST_F(ZSliderTest, FollowsTheRangeOfItsElementUntilItIsDetached)
{
    const auto element = MakeFloat(0.0f, 80.0f, 10.0f);
    const auto slider = MakeSlider(element);
    app.ProcessQueue();
    element->SetRange(0.0f, 160.0f, true);
    element->SetZFloat(160.0f, false);
    Tell(*element);
    EXPECT_EQ(slider->GetThumbRect().left, 80);
    slider->MouseDown({85, 5}, ZView::kMouseButton);
    slider->DetachFromElements();
    EXPECT_EQ(element->GetObserverCount(), 0);
    slider->MouseUp({20, 5}, ZView::kMouseButton);
    EXPECT_FALSE(slider->HasMouseCapture()) << "detached during a drag";
    EXPECT_EQ(element->GetZFloat(), 160.0f);
}

TEST_F(ZSliderTest, WorksWithoutAnElementAndWithoutATrack)
{
    const auto lone = MakeSlider(nullptr);
    lone->MouseDown({50, 5}, ZView::kMouseButton);
    EXPECT_FALSE(lone->HasMouseCapture());
    lone->MouseUp({50, 5}, ZView::kMouseButton | ZView::kMouseAlt);
    lone->MouseWheel({5, 5}, 0, 1, 1);
    Paint(*lone);

    const auto element = MakeFloat(3.0f, 3.0f, 3.0f);
    const auto narrow = MakeSlider(element, kHorizontal, "width=\"20\" height=\"20\"");
    narrow->MouseDown({100, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetZFloat(), 3.0f);
    EXPECT_EQ(narrow->GetThumbRect().left, 0);
}

TEST_F(ZSliderTest, ScaleMarksDivideTheTrackAndMayHaveTheirValuesBesideThem)
{
    for (const bool isVertical : {false, true}) {
        const auto element = MakeFloat(0.0f, 1.0f, 0.0f);
        const std::string attributes = kVertical + std::string(" drawscaletext=\"true\"");
        const auto slider = isVertical
                                ? MakeSlider(element, attributes, "width=\"60\" height=\"40\"")
                                : MakeSlider(element);
        slider->SetThumbBitmap(plainBitmap(1, 1));
        Paint(*slider);
        const auto before = std::move(canvas);
        slider->SetScaleMarkCount(3);
        Paint(*slider);
        std::vector<std::int32_t> places;  // along a line beside the groove
        for (std::int32_t at = 0; at < (isVertical ? kHeight : 110); ++at) {
            const ZPoint point = isVertical ? ZPoint{14, at} : ZPoint{at, 14};
            if (canvas->At(point.x, point.y) != before->At(point.x, point.y))
                places.push_back(at);
        }
        using Places = std::vector<std::int32_t>;  // each mark has its light beside it
        EXPECT_EQ(places,
                  isVertical ? (Places{10, 11, 19, 20, 29, 30}) : (Places{15, 16, 54, 55, 94, 95}));
        constexpr std::uint32_t kLabel = 0xff333333;
        EXPECT_EQ(std::ranges::count(canvas->Pixels(), kLabel) > 0, isVertical);
    }
}

TEST_F(ZSliderTest, APlainSliderDrawsATrailToTheOutlineOfItsThumb)
{
    const auto slider =
        Make<ZSlider>(R"(orient="horizontal" thumbsize="10" thumbheight="20")",
                      R"(<color name="enabledtrail" red="0" green="0" blue="0" alpha="255" />)");
    slider->AttachToElement(MakeFloat(0.0f, 90.0f, 45.0f));
    Paint(*slider);
    EXPECT_EQ(canvas->Ink().left, 10);
    EXPECT_EQ(canvas->AlphaAt(30, 10), 255u);
    EXPECT_EQ(canvas->AlphaAt(45, 5), 255u);
    EXPECT_EQ(canvas->AlphaAt(50, 5), 0u);
    EXPECT_EQ(canvas->AlphaAt(70, 10), 0u);
}

}  // namespace
