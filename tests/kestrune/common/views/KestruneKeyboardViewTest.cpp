// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneKeyboardView.h"

#include "kestrune/common/views/KestruneIgnoreKeysView.h"
#include "kestrune/common/views/KestruneKeyboardLabel.h"
#include "kestrune/common/views/ViewBench.h"
#include "support/Test.h"

using namespace orvane;

namespace
{

constexpr std::int32_t kKeyOfA = 0;
constexpr std::int32_t kKeyOfC = 3;
constexpr std::int32_t kKeyOfGSharp = 11;

const std::vector<float> kMajor{1, 0, 1, 0, 1, 1, 0, 1, 0, 1, 0, 1};

const std::string kKeyboardTag =
    "<view name=\"keys\"><element startingnote=\"key\"/><element keystate=\"notesInScale\"/>"
    "<element playingPitch=\"outputPitch\"/><element trackPitch=\"pitchCorrectionOnOff\"/>"
    "<font typeface=\"Arial\" height=\"11\"/>" +
    keyPictures("w", "nk", ".png") + keyPictures("l", "nkl", "_RedDot.png") +
    keyPictures("d", "nkd", ".png") + "</view>";

const std::string kBoxesTag =
    "<view name=\"boxes\"><element startingnote=\"key\"/><element keystate=\"notesInScale\"/>"
    "<element ignorekeystate=\"ignoredNotes\"/><bitmap type=\"on\" id=\"GreenCheckBoxOn.png\"/>"
    "<bitmap type=\"off\" id=\"GreenCheckBoxOff.png\"/>" +
    keyPictures("w", "nk", ".png") + "</view>";

bool isBlack(std::int32_t note)
{
    return std::string("010100101010")[static_cast<std::size_t>(note % 12)] == '1';
}

ZPoint middleOf(const ZRect& rect)
{
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

struct OpenKeyboardView : KestruneKeyboardView
{
    using KestruneKeyboardView::KestruneKeyboardView;
    using KestruneKeyboardView::mEndNote;
    using KestruneKeyboardView::mLowerRect;
    using KestruneKeyboardView::mStartNote;
};

struct KestruneKeyboardViewTest : ::testing::Test
{
    using Notes = std::vector<std::int32_t>;

    KestruneKeyboardViewTest()
    {
        key->SetDiscrete(kKeyOfC, true);
        track->SetDiscrete(1, true);
        setSamples(*notes, kMajor);
        view = bench.Make<OpenKeyboardView>(kKeyboardTag, 296, 147);
    }

    [[nodiscard]] Notes Lit() const { return NotesThat(&ZBWKeys::IsKeyLit); }
    [[nodiscard]] Notes Down() const { return NotesThat(&ZBWKeys::IsKeyDown); }
    [[nodiscard]] Notes NotesThat(bool (ZBWKeys::*is)(std::int32_t) const) const
    {
        Notes found;
        for (std::int32_t note = view->mStartNote; note < view->mEndNote; ++note)
            if ((*view.*is)(note))
                found.push_back(note);
        return found;
    }
    /// The middle of the lower part of a white key.
    [[nodiscard]] ZPoint Low(std::size_t note) const { return middleOf(view->mLowerRect[note]); }
    void Click(const ZPoint& point)
    {
        Press(point);
        Release(point);
    }
    void Press(const ZPoint& point) { view->MouseDown(point, ZView::kMouseButton); }
    void Move(const ZPoint& point) { view->MouseMoved(point, ZView::kMouseButton); }
    void Release(const ZPoint& point) { view->MouseUp(point, ZView::kMouseButton); }
    void Choose(std::int32_t index)
    {
        key->SetDiscrete(index, false);
        bench.Tick();
    }
    std::int32_t Sing(float pitch)
    {
        outputPitch->SetZFloat(pitch, false);
        bench.Tick();
        return view->GetPlayingNote();
    }

    ViewBench bench;
    boost::shared_ptr<ZElement> key = bench.Add("key", ZElement::ZDISCRETE);
    boost::shared_ptr<ZElement> notes = bench.Add("notesInScale", ZElement::ZBUFFER, 12);
    boost::shared_ptr<ZElement> outputPitch = bench.Add("outputPitch", ZElement::ZFLOAT);
    boost::shared_ptr<ZElement> track = bench.Add("pitchCorrectionOnOff", ZElement::ZDISCRETE);
    boost::shared_ptr<Counted<OpenKeyboardView>> view;
};

struct KestruneIgnoreKeysViewTest : KestruneKeyboardViewTest
{
    void Click(const ZPoint& point)
    {
        boxes->MouseDown(point, ZView::kMouseButton);
        boxes->MouseUp(point, ZView::kMouseButton);
        bench.Tick();
    }
    /// The degrees whose flag is not 0, which are those whose box is checked.
    [[nodiscard]] Notes Ignored() const
    {
        Notes degrees;
        for (std::int32_t degree = 0; degree < 12; ++degree) {
            const float flag = samplesOf(*ignored)[static_cast<std::size_t>(degree)];
            EXPECT_EQ(boxes->IsIgnored(degree), flag != 0.0f) << degree;
            if (flag != 0.0f)
                degrees.push_back(degree);
        }
        return degrees;
    }

    boost::shared_ptr<ZElement> ignored = bench.Add("ignoredNotes", ZElement::ZBUFFER, 12);
    boost::shared_ptr<Counted<KestruneIgnoreKeysView>> boxes =
        bench.Make<KestruneIgnoreKeysView>(kBoxesTag, 296, 21);
};

TEST_F(KestruneKeyboardViewTest, KeysLieSideBySideInEveryKey)
{
    for (std::int32_t index = kKeyOfA; index <= kKeyOfGSharp; ++index) {
        Choose(index);
        const std::int32_t tonic = 45 + index;
        ASSERT_EQ(view->mStartNote, tonic);
        // A black key lies over the border of two white ones; in a keyboard that starts with a
        // black key, one pixel further left.
        const std::int32_t shift = isBlack(tonic) ? 1 : 0;
        std::int32_t border = isBlack(tonic) ? 25 / 2 : 0;
        for (std::int32_t note = tonic; note < tonic + 13; ++note) {
            SCOPED_TRACE(note);
            const std::int32_t left = isBlack(note) ? border - 12 - shift : border;
            const ZRect black{left, 0, left + 25, 90};
            const ZRect white{left + (isBlack(note + 11) ? 12 : 0), 0,
                              left + (isBlack(note + 1) ? 29 : 41), 90};
            EXPECT_EQ(view->GetKeyPos(note), (ZPoint{left, 0}));
            EXPECT_EQ(view->GetUpperRect(note), isBlack(note) ? black : white);
            EXPECT_EQ(view->mLowerRect[static_cast<std::size_t>(note)],
                      isBlack(note) ? ZRect{} : (ZRect{left, 90, left + 41, 147}));
            border += isBlack(note) ? 0 : 41;
        }
    }
}

TEST_F(KestruneKeyboardViewTest, LightsTheScaleFromTheCurrentTonic)
{
    EXPECT_EQ(Lit(), (Notes{48, 50, 52, 53, 55, 57, 59, 60}));
    Choose(kKeyOfA);
    EXPECT_EQ(Lit(), (Notes{45, 47, 49, 50, 52, 54, 56, 57}));
    setSamples(*notes, {0.0f, 0.5f, 1.0f, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    bench.Tick();
    EXPECT_EQ(Lit(), (Notes{45, 47})) << "the tonic whatever its flag, others if it is 1.0";
}

TEST_F(KestruneKeyboardViewTest, ClickAddsANoteToTheScaleOrRemovesIt)
{
    const ZPoint fSharp = middleOf(view->GetUpperRect(54));
    Press(fSharp);
    EXPECT_EQ(Down(), (Notes{54}));
    EXPECT_EQ(samplesOf(*notes), kMajor) << "nothing is written before the release";
    Release(fSharp);
    EXPECT_EQ(Down(), Notes{});
    EXPECT_TRUE(view->IsKeyLit(54)) << "before the element reports the change";
    EXPECT_EQ(samplesOf(*notes)[6], 1.0f);
    bench.Tick();
    Click(fSharp);
    EXPECT_EQ(samplesOf(*notes), kMajor);
    // The tonic stays lit when its flag is cleared; the upper tonic does not.
    Click(Low(48));
    bench.Tick();
    EXPECT_EQ(samplesOf(*notes)[0], 0.0f);
    EXPECT_EQ(Lit(), (Notes{48, 50, 52, 53, 55, 57, 59}));
}

TEST_F(KestruneKeyboardViewTest, SharedEdgesBelongToTheHigherKeyAndTheUpperTonicCannotBePressed)
{
    for (const auto& [point, down] : {std::pair{ZPoint{41, 120}, Notes{50}},
                                      {ZPoint{0, 0}, Notes{48, 60}},
                                      {ZPoint{294, 120}, Notes{}},
                                      {ZPoint{20, 148}, Notes{}}})
    {
        Press(point);
        EXPECT_EQ(Down(), down) << point.x;
        Release({600, 5});
        EXPECT_EQ(samplesOf(*notes), kMajor);
    }
}

TEST_F(KestruneKeyboardViewTest, ReleaseOutsideOrAMoveOfTheKeyboardEndsThePressAndLeavesTheScale)
{
    const ZPoint inside = Low(48);
    const ZPoint outside = Low(53);
    Press(inside);
    Move(outside);
    EXPECT_EQ(Down(), Notes{});
    Move(inside);
    EXPECT_TRUE(view->IsKeyDown(48));
    Release(outside);
    Release(inside);
    EXPECT_EQ(Down(), Notes{});
    EXPECT_EQ(samplesOf(*notes), kMajor);

    // The press of a second button replaces that of the first.
    const ZPoint d = Low(50);
    Press(inside);
    view->MouseDoubleClick(d, ZView::kMouseButton);
    EXPECT_FALSE(view->IsKeyDown(48));
    Release(d);
    EXPECT_EQ(samplesOf(*notes)[2], 0.0f);
    EXPECT_EQ(samplesOf(*notes)[0], 1.0f);
    setSamples(*notes, kMajor);
    bench.Tick();
    const ZPoint point = Low(48);
    const std::function<void()> ends[] = {
        [&] { Choose(kKeyOfGSharp); }, [&] { view->OnDetached(); },
        [&] { view->HandleZMessage(boost::make_shared<ZMessage>(ZDOCUMENTCLOSED)); }};
    for (const auto& end : ends) {
        Press(point);
        ASSERT_NE(Down(), Notes{});
        end();
        EXPECT_EQ(Down(), Notes{});
        Release(point);
        EXPECT_EQ(samplesOf(*notes), kMajor);
    }
    EXPECT_EQ(Lit(), Notes{}) << "without a document nothing is lit";
}

TEST_F(KestruneKeyboardViewTest, SungNoteIsFoldedIntoTheOctaveOfTheKeyboard)
{
    for (const auto& [pitch, note] : {std::pair{4.0f * 329.63f, 52},
                                      {392.00f / 4.0f, 55},
                                      {246.94f, 59},
                                      {587.33f, 50},
                                      {16.35f, 48},
                                      {523.25f, 60},
                                      {261.63f, 48}})
        EXPECT_EQ(Sing(pitch), note) << pitch;
    // Pitches outside the scale and values that are no pitch change nothing.
    using Limits = std::numeric_limits<float>;
    const int before = view->repaints;
    for (const float pitch : {277.18f, 0.0f, -261.63f, Limits::quiet_NaN(), Limits::infinity()})
        EXPECT_EQ(Sing(pitch), 48) << pitch;
    EXPECT_EQ(view->repaints, before);

    track->SetDiscrete(0, false);
    EXPECT_EQ(Sing(293.66f), -1) << "with correction off no key follows the voice";
    track->SetDiscrete(1, false);
    EXPECT_EQ(Sing(329.63f), 52);
}

TEST_F(KestruneKeyboardViewTest, PaintsKeysByTheirStateWithBlackKeysOnTop)
{
    Sing(329.63f);
    Press(middleOf(view->GetUpperRect(54)));
    const auto picture = ViewBench::Paint(*view);
    for (const auto& [note, file, at] : {std::tuple(50, "nkl2_RedDot.png", ZPoint{20, 120}),
                                         {52, "nkd3.png", {20, 120}},
                                         {49, "nk4.png", {12, 80}},
                                         {54, "nkd4.png", {12, 80}}})
        EXPECT_EQ(picture->At(view->GetKeyPos(note).x + at.x, at.y), bench.PixelOf(file, at))
            << note;
}

TEST_F(KestruneKeyboardViewTest, LabelNamesKeyAndScale)
{
    const auto scale = bench.Add("scale", ZElement::ZDISCRETE);
    for (const char* name : {"Chromatic", "Major"})
        scale->AddDiscreteValue(name);
    key->AddDiscreteValue("A");
    key->SetDiscrete(0, true);
    const auto label = bench.Make<KestruneKeyboardLabel>(
        "<view name=\"label\"><element startingnote=\"key\" scale=\"scale\"/></view>", 100, 20);
    EXPECT_EQ(label->GetText().ToNarrow(), "A Chromatic ->");
    scale->SetDiscrete(1, false);
    bench.Tick();
    EXPECT_EQ(label->GetText().ToNarrow(), "A Major ->");
}

TEST_F(KestruneIgnoreKeysViewTest, ClickSwitchesTheBoxOfADegreeWhichMovesWithTheKey)
{
    for (std::int32_t degree = 0; degree < 12; ++degree) {
        const ZRect box = boxes->GetBoxRect(48 + degree);
        Click({box.left, box.bottom});
        EXPECT_EQ(Ignored(), Notes{degree});
        Click({box.right, box.top});
    }
    for (const ZPoint& point : {ZPoint{boxes->GetBoxRect(48).right + 1, 5}, {295, 5}, {12, 19}})
        Click(point);
    EXPECT_EQ(Ignored(), Notes{}) << "between the boxes, above the upper tonic, below a box";

    Click({boxes->GetBoxRect(55).left + 2, 3});
    Choose(11);
    EXPECT_EQ(Ignored(), Notes{7});
    Click({boxes->GetBoxRect(63).left + 2, 3});
    EXPECT_EQ(Ignored(), Notes{}) << "the fifth above the new tonic";
}

TEST_F(KestruneIgnoreKeysViewTest, AnyFlagButZeroIsIgnoredAndAClickSetsItToZero)
{
    setSamples(*ignored, {0.0f, 0.5f, -1.0f, std::numeric_limits<float>::quiet_NaN(), 0, 0, 0, 0, 0,
                          0, 0, 0});
    bench.Tick();
    EXPECT_EQ(Ignored(), (Notes{1, 2, 3}));
    Click({boxes->GetBoxRect(49).left, 3});
    EXPECT_EQ(samplesOf(*ignored)[1], 0.0f);
}

}  // namespace
