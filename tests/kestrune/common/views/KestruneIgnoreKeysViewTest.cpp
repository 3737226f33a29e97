// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneIgnoreKeysView.h"

#include "kestrune/common/views/ViewBench.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

constexpr std::int32_t kBox = 14;  // width and height of the box's picture, in pixels

const std::string kBoxesTag =
    "<view name=\"boxes\"><element startingnote=\"key\"/><element keystate=\"notesInScale\"/>"
    "<element ignorekeystate=\"ignoredNotes\"/><bitmap type=\"on\" id=\"GreenCheckBoxOn.png\"/>"
    "<bitmap type=\"off\" id=\"GreenCheckBoxOff.png\"/>" +
    keyPictures("w", "nk", ".png") + "</view>";

class KestruneIgnoreKeysViewTest : public ::testing::Test
{
protected:
    using Degrees = std::vector<std::int32_t>;

    KestruneIgnoreKeysViewTest()
    {
        key->SetDiscrete(3, true);
        boxes = bench.Make<KestruneIgnoreKeysView>(kBoxesTag, 296, 21);
    }

    void Choose(std::int32_t index)
    {
        key->SetDiscrete(index, false);
        bench.Tick();
    }
    void Click(const ZPoint& point)
    {
        boxes->MouseDown(point, ZView::kMouseButton);
        EXPECT_FALSE(boxes->HasMouseCapture());
        boxes->MouseUp(point, ZView::kMouseButton);
        bench.Tick();
    }
    /// The degrees whose flag is not 0, which are those whose box is checked.
    [[nodiscard]] Degrees Ignored() const
    {
        Degrees degrees;
        for (std::int32_t degree = 0; degree < 12; ++degree) {
            const float flag = samplesOf(*ignored)[static_cast<std::size_t>(degree)];
            EXPECT_EQ(boxes->IsIgnored(degree), flag != 0.0f) << degree;
            if (flag != 0.0f)
                degrees.push_back(degree);
        }
        return degrees;
    }

    ViewBench bench;
    boost::shared_ptr<ZElement> key = bench.Add("key", ZElement::ZDISCRETE);
    boost::shared_ptr<ZElement> notes = bench.Add("notesInScale", ZElement::ZBUFFER, 12);
    boost::shared_ptr<ZElement> ignored = bench.Add("ignoredNotes", ZElement::ZBUFFER, 12);
    boost::shared_ptr<Counted<KestruneIgnoreKeysView>> boxes;
};

TEST_F(KestruneIgnoreKeysViewTest, BoxesAreCentredOnTheirKeysInEveryKey)
{
    for (std::int32_t index = 0; index < 12; ++index) {
        Choose(index);
        for (std::int32_t note = 45 + index; note < 57 + index; ++note) {
            SCOPED_TRACE(note);
            const ZRect upper = boxes->GetUpperRect(note);
            const std::int32_t middle = boxes->GetBoxPos(note).x + kBox / 2;
            EXPECT_NEAR(middle, (upper.left + upper.right) / 2.0, 1.0);
        }
    }
    EXPECT_EQ(boxes->GetBoxPos(56).x, -1 + 5) << "on a black tonic";
}

TEST_F(KestruneIgnoreKeysViewTest, ClickSwitchesTheBoxOfADegreeWhichMovesWithTheKey)
{
    for (std::int32_t degree = 0; degree < 12; ++degree) {
        const ZRect box = boxes->GetBoxRect(48 + degree);
        Click({box.left, box.bottom});
        EXPECT_EQ(Ignored(), Degrees{degree});
        Click({box.right, box.top});
    }
    const std::int32_t gap = boxes->GetBoxRect(48).right + 1;
    for (const ZPoint& point : {ZPoint{gap, 5}, ZPoint{295, 5}, ZPoint{12, 19}})
        Click(point);
    EXPECT_EQ(Ignored(), Degrees{}) << "between the boxes, above the upper tonic, below a box";

    Click({boxes->GetBoxRect(55).left + 2, 3});
    Choose(11);
    EXPECT_EQ(Ignored(), Degrees{7});
    Click({boxes->GetBoxRect(63).left + 2, 3});
    EXPECT_EQ(Ignored(), Degrees{}) << "the fifth above the new tonic";
}

TEST_F(KestruneIgnoreKeysViewTest, AnyFlagButZeroIsIgnoredAndAClickSetsItToZero)
{
    setSamples(*ignored, {0.0f, 0.5f, -1.0f, std::numeric_limits<float>::quiet_NaN(), 0, 0, 0, 0, 0,
                          0, 0, 0});
    bench.Tick();
    EXPECT_EQ(Ignored(), (Degrees{1, 2, 3}));
    Click({boxes->GetBoxRect(49).left, 3});
    EXPECT_EQ(samplesOf(*ignored)[1], 0.0f);
}

TEST_F(KestruneIgnoreKeysViewTest, PaintsCheckedAndUncheckedBoxesButNotTheScale)
{
    Click({boxes->GetBoxRect(50).left + 2, 3});
    const auto picture = ViewBench::Paint(*boxes);
    const auto shows = [&](std::int32_t note, const char* file) {
        return picture->At(boxes->GetBoxPos(note).x + 5, 6) == bench.PixelOf(file, {5, 6});
    };
    EXPECT_TRUE(shows(50, "GreenCheckBoxOn.png"));
    EXPECT_TRUE(shows(48, "GreenCheckBoxOff.png"));
    EXPECT_NE(picture->AlphaAt(boxes->GetBoxPos(48).x + kBox / 2, 20), 0u)
        << "a line leads down to the key";
    setSamples(*notes, std::vector<float>(12, 1.0f));
    bench.Tick();
    EXPECT_EQ(ViewBench::Paint(*boxes)->Pixels(), picture->Pixels());
}

TEST_F(KestruneIgnoreKeysViewTest, WorksWithoutPictures)
{
    const auto bare = bench.Make<KestruneIgnoreKeysView>(
        "<view><element ignorekeystate=\"ignoredNotes\"/></view>", 296, 21);
    bare->MouseDown({0, 0}, ZView::kMouseButton);
    ViewBench::Paint(*bare);
    EXPECT_EQ(Ignored(), Degrees{});
}

}  // namespace

}  // namespace orvane
