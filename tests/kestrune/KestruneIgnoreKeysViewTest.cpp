// The boxes over the keyboard that leave notes uncorrected.

#include "kestrune/common/KestruneIgnoreKeysView.h"
#include "kestrune/ViewBench.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <string>

namespace orvane
{

namespace
{

constexpr std::int32_t kBox = 14;  // pixels, of the pictures

std::string ignoreTag()
{
    std::string tag =
        "<view name=\"boxes\"><element startingnote=\"key\"/><element keystate=\"notesInScale\"/>"
        "<element ignorekeystate=\"ignoredNotes\"/>"
        "<bitmap type=\"on\" id=\"GreenCheckBoxOn.png\"/>"
        "<bitmap type=\"off\" id=\"GreenCheckBoxOff.png\"/>";
    for (const char* shape : {"1", "2", "3", "4"})
        tag += std::string("<bitmap type=\"w") + shape + "\" id=\"nk" + shape + ".png\"/>";
    return tag + "</view>";
}

class KestruneIgnoreKeysViewTest : public ::testing::Test
{
protected:
    KestruneIgnoreKeysViewTest() { key->SetDiscrete(3, true); }

    boost::shared_ptr<Counted<KestruneIgnoreKeysView>> Make()
    {
        return bench.Make<KestruneIgnoreKeysView>(ignoreTag(), 296, 21);
    }
    void Click(ZView& boxes, const ZPoint& point)
    {
        boxes.MouseDown(point, ZView::kMouseButton);
        boxes.MouseUp(point, ZView::kMouseButton);
        bench.Tick();
    }
    /// Sum of the flags.
    float Ignored() const
    {
        const ZBuffer& flags = *ignored->GetZBuffer();
        return std::accumulate(flags.Data(), flags.Data() + flags.Length(), 0.0f);
    }

    ViewBench bench;
    boost::shared_ptr<ZElement> key = bench.Add("key", ZElement::ZDISCRETE);
    boost::shared_ptr<ZElement> notes = bench.Add("notesInScale", ZElement::ZBUFFER, 12);
    boost::shared_ptr<ZElement> ignored = bench.Add("ignoredNotes", ZElement::ZBUFFER, 12);
};

TEST_F(KestruneIgnoreKeysViewTest, EveryBoxStandsInTheMiddleOfItsKeyFromEveryTonic)
{
    const auto boxes = Make();
    for (std::int32_t index = 0; index < 12; ++index) {
        SCOPED_TRACE(index);
        key->SetDiscrete(index, false);
        bench.Tick();
        for (std::int32_t note = 45 + index; note < 57 + index; ++note) {
            SCOPED_TRACE(note);
            const ZRect upper = boxes->GetUpperRect(note);
            const std::int32_t middle = boxes->GetBoxPos(note).x + kBox / 2;
            EXPECT_NEAR(middle, (upper.left + upper.right) / 2.0, 1.0);
            EXPECT_NEAR(boxes->GetBoxRect(note).left, boxes->GetBoxPos(note).x, 1)
                << "a click means the box that is seen";
            EXPECT_EQ(boxes->GetBoxRect(note).GetWidth(), kBox);
        }
    }
    EXPECT_EQ(boxes->GetBoxPos(56).x, -1 + 5) << "of a black tonic";
}

TEST_F(KestruneIgnoreKeysViewTest, AClickFlipsTheBoxUnderItOnTheWayDown)
{
    const auto boxes = Make();
    for (std::int32_t degree = 0; degree < 12; ++degree) {
        const ZRect box = boxes->GetBoxRect(48 + degree);
        boxes->MouseDown({box.left, box.bottom}, ZView::kMouseButton);
        EXPECT_FALSE(boxes->HasMouseCapture());
        EXPECT_EQ(samplesOf(*ignored)[static_cast<std::size_t>(degree)], 1.0f);
        EXPECT_TRUE(ignored->IsMarkedChanged());
        bench.Tick();
        EXPECT_TRUE(boxes->IsIgnored(degree));
        EXPECT_EQ(Ignored(), 1.0f);
        Click(*boxes, {box.right, box.top});
        EXPECT_EQ(Ignored(), 0.0f);
    }
}

TEST_F(KestruneIgnoreKeysViewTest, BetweenBoxesAndOverTheUpperTonicNothingHappens)
{
    const auto boxes = Make();
    const std::int32_t gap = boxes->GetBoxRect(48).right + 1;
    for (const ZPoint& point : {ZPoint{gap, 5}, ZPoint{295, 5}, ZPoint{300, 5}, ZPoint{12, 19}})
        Click(*boxes, point);
    EXPECT_EQ(Ignored(), 0.0f);
}

TEST_F(KestruneIgnoreKeysViewTest, AnyFlagButZeroShowsAsIgnoredAndClearsToZero)
{
    const auto boxes = Make();
    setSamples(*ignored, {0.0f, 0.5f, -1.0f, std::numeric_limits<float>::quiet_NaN()});
    bench.Tick();
    EXPECT_FALSE(boxes->IsIgnored(0));
    for (const std::int32_t degree : {1, 2, 3})
        EXPECT_TRUE(boxes->IsIgnored(degree)) << degree;
    Click(*boxes, {boxes->GetBoxRect(49).left, 3});
    EXPECT_EQ(samplesOf(*ignored)[1], 0.0f);
}

TEST_F(KestruneIgnoreKeysViewTest, BoxesKeepTheirDegreesWhenTheKeyChanges)
{
    const auto boxes = Make();
    Click(*boxes, {boxes->GetBoxRect(55).left + 2, 3});
    ASSERT_TRUE(boxes->IsIgnored(7));
    key->SetDiscrete(11, false);
    bench.Tick();
    EXPECT_TRUE(boxes->IsIgnored(7));
    Click(*boxes, {boxes->GetBoxRect(63).left + 2, 3});
    EXPECT_EQ(Ignored(), 0.0f) << "the box of the fifth above the new tonic";
    EXPECT_EQ(boxes->GetEndNote(), boxes->GetStartNote() + 12);
}

TEST_F(KestruneIgnoreKeysViewTest, PaintsBoxesAndGroovesThatDoNotShowTheScale)
{
    const auto boxes = Make();
    Click(*boxes, {boxes->GetBoxRect(50).left + 2, 3});
    const auto picture = ViewBench::Paint(*boxes);
    const auto boxAt = [&](std::int32_t note, const char* file) {
        return picture.At(boxes->GetBoxPos(note).x + 5, 6) == bench.Load(file).At(5, 6);
    };
    EXPECT_TRUE(boxAt(50, "GreenCheckBoxOn.png"));
    EXPECT_TRUE(boxAt(48, "GreenCheckBoxOff.png"));
    const std::int32_t centre = boxes->GetBoxPos(48).x + kBox / 2;
    for (std::int32_t y = kBox; y < 21; ++y) {
        EXPECT_EQ(picture.At(centre - 1, y), 0x33000000u) << y;
        EXPECT_EQ(picture.At(centre, y), 0x78ffffffu) << y;
        EXPECT_EQ(picture.AlphaAt(centre + 1, y), 0u) << y;
    }
    setSamples(*notes, std::vector<float>(12, 1.0f));
    bench.Tick();
    EXPECT_EQ(ViewBench::Paint(*boxes), picture);
}

TEST_F(KestruneIgnoreKeysViewTest, ShortBuffersAndMissingPicturesAreNoTrouble)
{
    ViewBench other;
    const auto flags = other.Add("ignoredNotes", ZElement::ZBUFFER, 3);
    const auto boxes = other.Make<KestruneIgnoreKeysView>(ignoreTag(), 296, 21);
    boxes->MouseDown({boxes->GetBoxRect(59).left, 1}, ZView::kMouseButton);
    EXPECT_FALSE(flags->IsMarkedChanged());
    const auto bare = other.Make<KestruneIgnoreKeysView>(
        "<view><element ignorekeystate=\"ignoredNotes\"/></view>", 296, 21);
    bare->MouseDown({0, 0}, ZView::kMouseButton);
    ViewBench::Paint(*bare);
    EXPECT_FALSE(flags->IsMarkedChanged());
}

}  // namespace

}  // namespace orvane
