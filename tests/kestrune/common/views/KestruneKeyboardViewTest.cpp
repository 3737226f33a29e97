// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneKeyboardView.h"

#include "kestrune/common/views/KestruneKeyboardLabel.h"
#include "kestrune/common/views/ViewBench.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

constexpr std::int32_t kKeyOfA = 0;
constexpr std::int32_t kKeyOfC = 3;
constexpr std::int32_t kKeyOfGSharp = 11;
constexpr float kC4 = 261.63f;

const std::vector<float> kMajor{1, 0, 1, 0, 1, 1, 0, 1, 0, 1, 0, 1};

const std::string kKeyboardTag =
    "<view name=\"keys\"><element startingnote=\"key\"/><element keystate=\"notesInScale\"/>"
    "<element playingPitch=\"outputPitch\"/><element trackPitch=\"pitchCorrectionOnOff\"/>"
    "<font typeface=\"Arial\" height=\"11\"/>" +
    keyPictures("w", "nk", ".png") + keyPictures("l", "nkl", "_RedDot.png") +
    keyPictures("d", "nkd", ".png") + "</view>";

bool isBlack(std::int32_t note)
{
    return std::string("010100101010")[static_cast<std::size_t>(note % 12)] == '1';
}

ZPoint middleOf(const ZRect& rect)
{
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

class OpenKeyboardView : public KestruneKeyboardView
{
public:
    using KestruneKeyboardView::KestruneKeyboardView;
    using KestruneKeyboardView::mEndNote;
    using KestruneKeyboardView::mLowerRect;
    using KestruneKeyboardView::mStartNote;
};

class KestruneKeyboardViewTest : public ::testing::Test
{
protected:
    using Notes = std::vector<std::int32_t>;

    KestruneKeyboardViewTest()
    {
        key->SetDiscrete(kKeyOfC, true);
        track->SetDiscrete(1, true);
        setSamples(*notes, kMajor);
        view = bench.Make<OpenKeyboardView>(kKeyboardTag, 296, 147);
    }

    // Notes in the keyboard's range.
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
    [[nodiscard]] ZPoint Low(std::int32_t note) const
    {
        return middleOf(view->mLowerRect[static_cast<std::size_t>(note)]);
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
            EXPECT_EQ(view->GetKeyPos(note), (ZPoint{left, 0}));
            const ZRect& lower = view->mLowerRect[static_cast<std::size_t>(note)];
            if (isBlack(note)) {
                EXPECT_EQ(view->GetUpperRect(note), (ZRect{left, 0, left + 25, 90}));
                EXPECT_EQ(lower, ZRect{});
            } else {
                EXPECT_EQ(view->GetUpperRect(note).left, left + (isBlack(note + 11) ? 12 : 0));
                EXPECT_EQ(view->GetUpperRect(note).right, left + (isBlack(note + 1) ? 29 : 41));
                EXPECT_EQ(lower, (ZRect{left, 90, left + 41, 147}));
                border += 41;
            }
        }
    }
    for (const auto& [index, tonic] : {std::pair{-1, 45}, {12, 56}}) {
        Choose(index);
        EXPECT_EQ(view->mStartNote, tonic) << "indices outside the list of keys are clamped";
    }
}

TEST_F(KestruneKeyboardViewTest, LightsTheScaleFromTheCurrentTonic)
{
    EXPECT_EQ(Lit(), (Notes{48, 50, 52, 53, 55, 57, 59, 60}));
    Choose(kKeyOfA);
    EXPECT_EQ(Lit(), (Notes{45, 47, 49, 50, 52, 54, 56, 57}));
    // Only 1.0 counts as set, and the tonic is lit whatever its flag is.
    setSamples(*notes, {0.0f, 0.5f, 1.0f, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    bench.Tick();
    EXPECT_EQ(Lit(), (Notes{45, 47}));
}

TEST_F(KestruneKeyboardViewTest, ClickAddsANoteToTheScaleOrRemovesIt)
{
    const ZPoint fSharp = middleOf(view->GetUpperRect(54));
    Press(fSharp);
    EXPECT_TRUE(view->HasMouseCapture());
    EXPECT_EQ(Down(), (Notes{54}));
    EXPECT_EQ(samplesOf(*notes), kMajor) << "nothing is written before the release";
    Release(fSharp);
    EXPECT_FALSE(view->HasMouseCapture());
    EXPECT_EQ(Down(), Notes{});
    EXPECT_TRUE(view->IsKeyLit(54)) << "before the element reports the change";
    EXPECT_EQ(samplesOf(*notes)[6], 1.0f);
    bench.Tick();
    Press(fSharp);
    Release(fSharp);
    EXPECT_EQ(samplesOf(*notes), kMajor);

    // The tonic stays lit when its flag is cleared; the upper tonic does not.
    Press(Low(48));
    Release(Low(48));
    bench.Tick();
    EXPECT_EQ(samplesOf(*notes)[0], 0.0f);
    EXPECT_EQ(Lit(), (Notes{48, 50, 52, 53, 55, 57, 59}));
}

TEST_F(KestruneKeyboardViewTest, SharedEdgesBelongToTheHigherKeyAndTheUpperTonicCannotBePressed)
{
    for (const auto& [point, down] : {std::pair{ZPoint{41, 120}, Notes{50}},
                                      {ZPoint{0, 0}, Notes{48, 60}},
                                      {ZPoint{294, 120}, Notes{}},
                                      {ZPoint{290, 20}, Notes{}},
                                      {ZPoint{20, 148}, Notes{}},
                                      {ZPoint{-1, 5}, Notes{}}})
    {
        SCOPED_TRACE(point.x);
        Press(point);
        EXPECT_EQ(Down(), down);
        Move(point);
        Release({600, 5});
        EXPECT_EQ(samplesOf(*notes), kMajor);
    }
}

TEST_F(KestruneKeyboardViewTest, ReleaseOutsideThePressedKeyLeavesTheScale)
{
    const ZPoint inside = Low(48);
    const ZPoint outside = Low(53);
    Press(inside);
    Move(outside);
    EXPECT_EQ(Down(), Notes{});
    const int before = view->repaints;
    Move({outside.x + 1, outside.y});
    EXPECT_EQ(view->repaints, before);
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
    Release(inside);
    EXPECT_EQ(samplesOf(*notes)[2], 0.0f);
    EXPECT_EQ(samplesOf(*notes)[0], 1.0f);
}

TEST_F(KestruneKeyboardViewTest, PressEndsWhenTheKeyboardMovesOrIsDetached)
{
    const ZPoint point = Low(48);
    const std::function<void()> ends[] = {[&] { Choose(kKeyOfGSharp); },
                                          [&] { view->OnDetached(); },
                                          [&] { ViewBench::CloseDocument(*view); }};
    for (const auto& end : ends) {
        Press(point);
        ASSERT_NE(Down(), Notes{});
        end();
        EXPECT_EQ(Down(), Notes{});
        EXPECT_FALSE(view->HasMouseCapture());
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
                                      {kC4, 48}})
        EXPECT_EQ(Sing(pitch), note) << pitch;
    // Pitches outside the scale and values that are no pitch change nothing.
    using Limits = std::numeric_limits<float>;
    const int before = view->repaints;
    for (const float pitch : {277.18f, kC4, 0.0f, -kC4, Limits::denorm_min(), Limits::quiet_NaN(),
                              Limits::infinity(), -Limits::infinity()})
        EXPECT_EQ(Sing(pitch), 48) << pitch;
    EXPECT_EQ(view->repaints, before);
    EXPECT_TRUE(view->IsKeyLit(Sing(Limits::max())));

    track->SetDiscrete(0, false);
    EXPECT_EQ(Sing(293.66f), -1) << "with correction off no key follows the voice";
    track->SetDiscrete(1, false);
    EXPECT_EQ(Sing(329.63f), 52);
}

TEST_F(KestruneKeyboardViewTest, WorksWithBuffersOfOtherLengthsAndWithoutElements)
{
    for (const std::uint32_t length : {1u, 5u, 40u}) {
        ViewBench other;
        const auto otherNotes = other.Add("notesInScale", ZElement::ZBUFFER, length);
        view = other.Make<OpenKeyboardView>(kKeyboardTag, 296, 147);
        Press(Low(59));
        Release(Low(59));
        EXPECT_EQ(otherNotes->IsMarkedChanged(), length > 11) << length;
        view.reset();
    }
    ViewBench empty;
    view = empty.Make<OpenKeyboardView>("<view name=\"keys\"></view>", 296, 147);
    Press({0, 0});
    EXPECT_EQ(Down(), Notes{}) << "keys without pictures have no size";
    ViewBench::Paint(*view);
    view.reset();
}

TEST_F(KestruneKeyboardViewTest, PaintsKeysByTheirStateWithBlackKeysOnTop)
{
    Sing(329.63f);
    Press(middleOf(view->GetUpperRect(54)));
    const auto picture = ViewBench::Paint(*view);
    const auto shows = [&](std::int32_t note, const char* file, const ZPoint& at) {
        const ZPoint pos = view->GetKeyPos(note);
        return picture->At(pos.x + at.x, pos.y + at.y) == bench.PixelOf(file, at);
    };
    EXPECT_TRUE(shows(50, "nkl2_RedDot.png", {20, 120}));
    EXPECT_TRUE(shows(52, "nkd3.png", {20, 120})) << "sung";
    EXPECT_TRUE(shows(49, "nk4.png", {12, 80}));
    EXPECT_TRUE(shows(54, "nkd4.png", {12, 80})) << "pressed";
}

TEST_F(KestruneKeyboardViewTest, LabelNamesKeyAndScale)
{
    const auto scale = bench.Add("scale", ZElement::ZDISCRETE);
    for (const char* name : {"Chromatic", "Major"})
        scale->AddDiscreteValue(name);
    for (const char* name : {"A", "A#"})
        key->AddDiscreteValue(name);
    key->SetDiscrete(1, true);
    const auto label = bench.Make<KestruneKeyboardLabel>(
        "<view name=\"label\"><element startingnote=\"key\" scale=\"scale\"/></view>", 100, 20);
    EXPECT_EQ(label->GetText().ToNarrow(), "A# Chromatic ->");
    scale->SetDiscrete(1, false);
    bench.Tick();
    EXPECT_EQ(label->GetText().ToNarrow(), "A# Major ->");
}

}  // namespace

}  // namespace orvane
