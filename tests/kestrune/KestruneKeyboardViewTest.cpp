// The keyboard: where its keys lie, what they show, and how the mouse edits the scale.

#include "kestrune/common/KestruneKeyboardView.h"
#include "kestrune/ViewBench.h"
#include "kestrune/common/KestruneKeyboardLabel.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <set>
#include <string>
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

std::string pictures(const std::string& state, const std::string& file, const std::string& ending)
{
    std::string tags;
    for (const char* shape : {"1", "2", "3", "4"})
        tags += "<bitmap type=\"" + state + shape + "\" id=\"" + file + shape + ending + "\"/>";
    return tags;
}

const std::string kElements =
    "<element startingnote=\"key\"/><element keystate=\"notesInScale\"/>"
    "<element playingPitch=\"outputPitch\"/><element trackPitch=\"pitchCorrectionOnOff\"/>";

std::string keyboardTag()
{
    return "<view name=\"keys\">" + kElements + "<font typeface=\"Arial\" height=\"11\"/>" +
           pictures("w", "nk", ".png") + pictures("l", "nkl", "_RedDot.png") +
           pictures("d", "nkd", ".png") + "</view>";
}

bool isBlack(std::int32_t note)
{
    return std::string("010100101010")[static_cast<std::size_t>(note % 12)] == '1';
}

ZPoint middleOf(const ZRect& rect)
{
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

class KestruneKeyboardViewTest : public ::testing::Test
{
protected:
    using Keyboard = Counted<KestruneKeyboardView>;

    KestruneKeyboardViewTest()
    {
        key->SetDiscrete(kKeyOfC, true);
        track->SetDiscrete(1, true);
        setSamples(*notes, kMajor);
    }

    boost::shared_ptr<Keyboard> Make()
    {
        return bench.Make<KestruneKeyboardView>(keyboardTag(), 296, 147);
    }
    /// Notes in the keyboard's range that are lit.
    static std::vector<std::int32_t> Lit(const Keyboard& keys)
    {
        std::vector<std::int32_t> lit;
        for (std::int32_t note = keys.GetStartNote(); note < keys.GetEndNote(); ++note) {
            if (keys.IsKeyLit(note))
                lit.push_back(note);
        }
        return lit;
    }
    static bool IsAnyDown(const Keyboard& keys)
    {
        for (std::int32_t note = 0; note < ZBWKeys::kNotes; ++note) {
            if (keys.IsKeyDown(note))
                return true;
        }
        return false;
    }
    void Click(Keyboard& keys, const ZPoint& point)
    {
        keys.MouseDown(point, ZView::kMouseButton);
        keys.MouseUp(point, ZView::kMouseButton);
        bench.Tick();
    }
    std::int32_t Sing(const Keyboard& keys, float pitch)
    {
        outputPitch->SetZFloat(pitch, false);
        bench.Tick();
        return keys.GetPlayingNote();
    }

    ViewBench bench;
    boost::shared_ptr<ZElement> key = bench.Add("key", ZElement::ZDISCRETE);
    boost::shared_ptr<ZElement> notes = bench.Add("notesInScale", ZElement::ZBUFFER, 12);
    boost::shared_ptr<ZElement> outputPitch = bench.Add("outputPitch", ZElement::ZFLOAT);
    boost::shared_ptr<ZElement> track = bench.Add("pitchCorrectionOnOff", ZElement::ZDISCRETE);
};

TEST_F(KestruneKeyboardViewTest, SetsKeysSideBySideFromEveryTonic)
{
    const auto keys = Make();
    for (std::int32_t index = kKeyOfA; index <= kKeyOfGSharp; ++index) {
        SCOPED_TRACE(index);
        key->SetDiscrete(index, false);
        bench.Tick();
        const std::int32_t tonic = 45 + index;
        ASSERT_EQ(keys->GetStartNote(), tonic);
        ASSERT_EQ(keys->GetEndNote(), tonic + 13);
        // A black key stands on the border of two white ones, and one to the left of that in a
        // keyboard that begins with a black key.
        std::int32_t border = isBlack(tonic) ? 25 / 2 : 0;
        const std::int32_t shift = isBlack(tonic) ? 1 : 0;
        for (std::int32_t note = tonic; note < tonic + 13; ++note) {
            SCOPED_TRACE(note);
            if (isBlack(note)) {
                EXPECT_EQ(keys->GetKeyPos(note), (ZPoint{border - 12 - shift, 0}));
                EXPECT_EQ(keys->GetUpperRect(note),
                          (ZRect{border - 12 - shift, 0, border + 13 - shift, 90}));
                EXPECT_EQ(keys->GetLowerRect(note), ZRect{});
                continue;
            }
            const bool blackBefore = isBlack(note + 11);
            const bool blackAfter = isBlack(note + 1);
            EXPECT_EQ(keys->GetKeyPos(note), (ZPoint{border, 0}));
            EXPECT_EQ(keys->GetLowerRect(note), (ZRect{border, 90, border + 41, 147}));
            EXPECT_EQ(keys->GetUpperRect(note), (ZRect{border + (blackBefore ? 12 : 0), 0,
                                                       border + 41 - (blackAfter ? 12 : 0), 90}));
            border += 41;
        }
    }
}

TEST_F(KestruneKeyboardViewTest, LightsTheScaleFromTheTonicThatIsInForce)
{
    const auto keys = Make();
    EXPECT_EQ(Lit(*keys), (std::vector<std::int32_t>{48, 50, 52, 53, 55, 57, 59, 60}));

    key->SetDiscrete(kKeyOfA, false);
    bench.Tick();
    EXPECT_EQ(Lit(*keys), (std::vector<std::int32_t>{45, 47, 49, 50, 52, 54, 56, 57}));

    // Only 1.0 counts, and the tonic is lit whatever its flag says.
    setSamples(*notes, {0.0f, 0.5f, 1.0f});
    for (std::size_t i = 3; i < 12; ++i)
        notes->GetZBuffer()->Data()[i] = 0.0f;
    bench.Tick();
    EXPECT_EQ(Lit(*keys), (std::vector<std::int32_t>{45, 47}));
}

TEST_F(KestruneKeyboardViewTest, IndicesBeyondTheListOfKeysStayAtItsEnds)
{
    const auto keys = Make();
    using Limits = std::numeric_limits<std::int32_t>;
    for (const auto& [index, tonic] : std::vector<std::pair<std::int32_t, std::int32_t>>{
             {-1, 45}, {Limits::min(), 45}, {12, 56}, {Limits::max(), 56}})
    {
        key->SetDiscrete(index, false);
        bench.Tick();
        EXPECT_EQ(keys->GetStartNote(), tonic) << index;
    }
}

TEST_F(KestruneKeyboardViewTest, AClickTakesANoteIntoTheScaleAndOut)
{
    const auto keys = Make();
    constexpr std::int32_t kFSharp = 54;
    keys->MouseDown(middleOf(keys->GetUpperRect(kFSharp)), ZView::kMouseButton);
    EXPECT_TRUE(keys->HasMouseCapture());
    EXPECT_TRUE(keys->IsKeyDown(kFSharp));
    EXPECT_EQ(samplesOf(*notes), kMajor) << "nothing is written before the release";
    keys->MouseUp(middleOf(keys->GetUpperRect(kFSharp)), ZView::kMouseButton);
    EXPECT_FALSE(keys->HasMouseCapture());
    EXPECT_FALSE(IsAnyDown(*keys));
    EXPECT_TRUE(keys->IsKeyLit(kFSharp)) << "at once, before the element reports";
    EXPECT_TRUE(notes->IsMarkedChanged());
    EXPECT_EQ(samplesOf(*notes)[6], 1.0f);
    bench.Tick();
    EXPECT_TRUE(keys->IsKeyLit(kFSharp));

    Click(*keys, middleOf(keys->GetUpperRect(kFSharp)));
    EXPECT_EQ(samplesOf(*notes), kMajor);
    Click(*keys, middleOf(keys->GetLowerRect(52)));
    EXPECT_EQ(samplesOf(*notes)[4], 0.0f) << "the lower part of a white key is the key, too";
}

TEST_F(KestruneKeyboardViewTest, TheTonicStaysLitWithItsFlagCleared)
{
    const auto keys = Make();
    Click(*keys, middleOf(keys->GetLowerRect(48)));
    EXPECT_EQ(samplesOf(*notes)[0], 0.0f);
    EXPECT_TRUE(keys->IsKeyLit(48));
    EXPECT_FALSE(keys->IsKeyLit(60)) << "the upper tonic shows the flag";
}

TEST_F(KestruneKeyboardViewTest, TheUpperTonicAndTheGroundCannotBePressed)
{
    const auto keys = Make();
    for (const ZPoint& point : {ZPoint{294, 120}, ZPoint{290, 20}, ZPoint{20, 148}, ZPoint{-1, 5}})
    {
        keys->MouseDown(point, ZView::kMouseButton);
        EXPECT_FALSE(IsAnyDown(*keys)) << point.x << ", " << point.y;
        keys->MouseMoved(point, ZView::kMouseButton);
        keys->MouseUp(point, ZView::kMouseButton);
        EXPECT_EQ(samplesOf(*notes), kMajor) << point.x << ", " << point.y;
    }
    // The corner is the tonic's: the empty lower rectangles of black keys have no point.
    keys->MouseDown({0, 0}, ZView::kMouseButton);
    EXPECT_TRUE(keys->IsKeyDown(48));
}

TEST_F(KestruneKeyboardViewTest, EdgesBelongToTheLaterKey)
{
    const auto keys = Make();
    keys->MouseDown({41, 120}, ZView::kMouseButton);  // C and D meet here
    EXPECT_TRUE(keys->IsKeyDown(50));
    EXPECT_FALSE(keys->IsKeyDown(48));
}

TEST_F(KestruneKeyboardViewTest, LeavingThePressedKeyLiftsItAndLeavesTheScale)
{
    const auto keys = Make();
    const ZPoint inside = middleOf(keys->GetLowerRect(48));
    const ZPoint outside = middleOf(keys->GetLowerRect(53));
    keys->MouseDown(inside, ZView::kMouseButton);
    EXPECT_TRUE(keys->IsKeyDown(60)) << "both tonics go down together";
    keys->MouseMoved(outside, ZView::kMouseButton);
    EXPECT_FALSE(IsAnyDown(*keys));
    const int before = keys->repaints;
    keys->MouseMoved({outside.x + 1, outside.y}, ZView::kMouseButton);
    EXPECT_EQ(keys->repaints, before);
    keys->MouseMoved(inside, ZView::kMouseButton);
    EXPECT_TRUE(keys->IsKeyDown(48));
    keys->MouseUp(outside, ZView::kMouseButton);
    EXPECT_FALSE(IsAnyDown(*keys));
    EXPECT_EQ(samplesOf(*notes), kMajor);
    keys->MouseUp(inside, ZView::kMouseButton);
    EXPECT_EQ(samplesOf(*notes), kMajor) << "a release without a press";
}

TEST_F(KestruneKeyboardViewTest, QuickPressesAndSecondButtonsArePresses)
{
    const auto keys = Make();
    const ZPoint c = middleOf(keys->GetLowerRect(48));
    const ZPoint d = middleOf(keys->GetLowerRect(50));
    keys->MouseDown(c, ZView::kMouseButton);
    keys->MouseDoubleClick(d, ZView::kMouseButton);
    EXPECT_FALSE(keys->IsKeyDown(48));
    EXPECT_TRUE(keys->IsKeyDown(50));
    keys->MouseUp(d, ZView::kMouseButton);
    keys->MouseUp(c, ZView::kMouseButton);
    EXPECT_FALSE(IsAnyDown(*keys));
    EXPECT_EQ(samplesOf(*notes)[2], 0.0f);
    EXPECT_EQ(samplesOf(*notes)[0], 1.0f);
}

TEST_F(KestruneKeyboardViewTest, APressEndsWhenTheKeyboardMovesOrGoes)
{
    const auto keys = Make();
    const ZPoint point = middleOf(keys->GetLowerRect(48));
    for (const char* how : {"key", "window", "document"}) {
        SCOPED_TRACE(how);
        keys->MouseDown(point, ZView::kMouseButton);
        ASSERT_TRUE(IsAnyDown(*keys));
        if (how == std::string("key")) {
            key->SetDiscrete(kKeyOfGSharp, false);
            bench.Tick();
        } else if (how == std::string("window")) {
            keys->OnDetached();
        } else {
            ViewBench::CloseDocument(*keys);
        }
        EXPECT_FALSE(IsAnyDown(*keys));
        EXPECT_FALSE(keys->HasMouseCapture());
        keys->MouseUp(point, ZView::kMouseButton);
        EXPECT_EQ(samplesOf(*notes), kMajor);
    }
    EXPECT_TRUE(Lit(*keys).empty()) << "without a document nothing is lit";
    Click(*keys, point);
    EXPECT_EQ(samplesOf(*notes), kMajor);
}

TEST_F(KestruneKeyboardViewTest, TheSungNoteIsFoldedIntoTheOctaveOfTheKeyboard)
{
    const auto keys = Make();
    EXPECT_EQ(Sing(*keys, kC4), 48);
    EXPECT_EQ(Sing(*keys, 4.0f * 329.63f), 52) << "two octaves above";
    EXPECT_EQ(Sing(*keys, 392.00f / 4.0f), 55) << "two octaves below";
    EXPECT_EQ(Sing(*keys, 246.94f), 59) << "the note just below";
    EXPECT_EQ(Sing(*keys, 2.0f * 293.66f), 50) << "the note two above the end";
    EXPECT_EQ(Sing(*keys, 16.35f), 48);
    EXPECT_EQ(Sing(*keys, 523.25f), 60) << "the upper tonic has a key of its own";
}

TEST_F(KestruneKeyboardViewTest, WhatIsOffTheScaleOrNoPitchChangesNothing)
{
    const auto keys = Make();
    ASSERT_EQ(Sing(*keys, kC4), 48);
    using Limits = std::numeric_limits<float>;
    const int before = keys->repaints;
    for (const float pitch : {277.18f, kC4, 0.0f, -kC4, Limits::denorm_min(), Limits::quiet_NaN(),
                              Limits::infinity(), -Limits::infinity()})
        EXPECT_EQ(Sing(*keys, pitch), 48) << pitch;
    EXPECT_EQ(keys->repaints, before);
    EXPECT_TRUE(keys->IsKeyLit(Sing(*keys, Limits::max())));
}

TEST_F(KestruneKeyboardViewTest, WithCorrectionOffNoKeyFollowsTheVoice)
{
    const auto keys = Make();
    ASSERT_EQ(Sing(*keys, kC4), 48);
    track->SetDiscrete(0, false);
    bench.Tick();
    EXPECT_EQ(keys->GetPlayingNote(), -1);
    EXPECT_EQ(Sing(*keys, 293.66f), -1);
    track->SetDiscrete(1, false);
    EXPECT_EQ(Sing(*keys, 329.63f), 52);
}

TEST_F(KestruneKeyboardViewTest, BuffersOfOtherLengthsAndMissingElementsAreNoTrouble)
{
    for (const std::uint32_t length : {1u, 5u, 40u}) {
        ViewBench other;
        const auto shortNotes = other.Add("notesInScale", ZElement::ZBUFFER, length);
        const auto keys = other.Make<KestruneKeyboardView>(keyboardTag(), 296, 147);
        const ZPoint point = middleOf(keys->GetLowerRect(59));
        keys->MouseDown(point, ZView::kMouseButton);
        keys->MouseUp(point, ZView::kMouseButton);
        EXPECT_EQ(shortNotes->IsMarkedChanged(), length > 11) << length;
    }
    ViewBench empty;
    const auto keys = empty.Make<KestruneKeyboardView>("<view name=\"keys\"></view>", 296, 147);
    Click(*keys, {0, 0});
    EXPECT_FALSE(keys->IsKeyLit(48)) << "a key without pictures has no place";
    ViewBench::Paint(*keys);
}

TEST_F(KestruneKeyboardViewTest, PaintsEachKeyByItsStateWithBlackOnesOnTop)
{
    const auto keys = Make();
    Sing(*keys, 329.63f);
    keys->MouseDown(middleOf(keys->GetUpperRect(54)), ZView::kMouseButton);
    const auto picture = ViewBench::Paint(*keys);
    const auto shows = [&](std::int32_t note, const char* file, const ZPoint& at) {
        const ZPoint pos = keys->GetKeyPos(note);
        return picture.At(pos.x + at.x, pos.y + at.y) == bench.Load(file).At(at.x, at.y);
    };
    for (const ZPoint& at : {ZPoint{20, 130}, ZPoint{20, 100}, ZPoint{8, 115}}) {
        EXPECT_TRUE(shows(50, "nkl2_RedDot.png", at));
        EXPECT_TRUE(shows(52, "nkd3.png", at)) << "sung";
        EXPECT_TRUE(shows(59, "nkl3_RedDot.png", at));
    }
    EXPECT_TRUE(shows(49, "nk4.png", {12, 80}));
    EXPECT_TRUE(shows(54, "nkd4.png", {12, 80})) << "pressed";
}

TEST_F(KestruneKeyboardViewTest, TheLabelNamesKeyAndScale)
{
    const auto scale = bench.Add("scale", ZElement::ZDISCRETE);
    for (const char* name : {"A", "A#"})
        key->AddDiscreteValue(name);
    for (const char* name : {"Chromatic", "Major"})
        scale->AddDiscreteValue(name);
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
