// SPDX-License-Identifier: GPL-3.0-or-later
// Scales of the pitch bay: choosing, editing, saving.

#include "kestrune/common/pitch/PsolaBayBench.h"
#include "support/BoxRecorder.h"

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

using Degrees = std::vector<std::int32_t>;
using Applied = std::pair<int, int>;

const Degrees kMajor{0, 2, 4, 5, 7, 9, 11};

/// Notes the scales that are put in force.
class ScaleBay : public ZPsolaBay
{
public:
    using ZPsolaBay::ZPsolaBay;
    void ApplyScale(int scaleIndex, int intonationIndex) override
    {
        applied.emplace_back(scaleIndex, intonationIndex);
        ZPsolaBay::ApplyScale(scaleIndex, intonationIndex);
    }
    std::vector<Applied> applied;
};

/// A bay that is ready and at rest.
class Bench : public PsolaBayBench<ScaleBay>
{
public:
    Bench()
    {
        EXPECT_TRUE(bay->Prepare());
        Tick();
    }

    void Restore(const std::string& archive)
    {
        bay->RestoreBody(firstElement(archive));
        application.ProcessQueue();
    }
    void Add(int count)
    {
        for (int i = 0; i < count; ++i)
            bay->AddCustomScale(ZString("Mine " + std::to_string(i)), Degrees{i % 11 + 1});
    }
};

/// The bay's archive, with the name that every buffer has once it was restored.
std::string archiveOf(const ZPsolaBay& bay)
{
    std::string text = bay.ExtractXML()->Write(0);
    const std::string name = "ElementBuffer";
    for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name))
        text.replace(at, name.size(), "buffer");
    return text;
}

std::vector<std::string> namesOf(const ZElement& element)
{
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < element.CountDiscreteValues(); ++i)
        names.push_back(element.GetDiscreteString(i)->ToNarrow());
    return names;
}

}  // namespace

TEST(ZPsolaBayScalesTest, ChosenAndEditedScalesExcludeEachOther)
{
    Bench bench;
    const auto isInForce = [&bench](const Applied& scale, const Degrees& notes, bool modified) {
        EXPECT_EQ(bench.bay->applied.back(), scale);
        EXPECT_EQ(bench.Flags("notesInScale"), notes);
        EXPECT_EQ(bench.Element("currentScaleModified").GetDiscrete(), modified ? 1 : 0);
    };
    isInForce({1, 0}, kMajor, false);  // the default
    bench.bay->applied.clear();
    bench.SetDiscrete("scale", 3);
    isInForce({3, 0}, {0, 3, 5, 6, 7, 10}, false);
    bench.Tick();
    EXPECT_EQ(bench.bay->applied.size(), 1u) << "the bay does not hear the notes that it shows";

    bench.SetFlags("notesInScale", {0, 6});
    isInForce({-1, 0}, {0, 6}, true);
    EXPECT_EQ(bench.Flags("currentCustomScale"), (Degrees{0, 6}));
    bench.SetDiscrete("scale", 1);
    isInForce({1, 0}, kMajor, false);

    // A change of intonation takes the chosen scale, also when notes were edited.
    bench.SetFlags("notesInScale", {0, 6});
    bench.SetDiscrete("intonation", 4);
    isInForce({1, 4}, kMajor, true);
}

TEST(ZPsolaBayScalesTest, RestoredIndexGivesWayToEditedNotes)
{
    Bench bench;
    bench.Element("currentScaleIndex").SetZFloat(2.0f, false);
    bench.Tick();
    EXPECT_EQ(bench.Element("scale").GetDiscrete(), 2);
    EXPECT_EQ(bench.bay->applied.back(), Applied(2, 0));

    bench.Element("currentScaleModified").SetDiscrete(1, true);
    bench.SetFlags("currentCustomScale", {0, 1});
    bench.Element("currentScaleIndex").SetZFloat(3.0f, false);
    bench.Tick();
    EXPECT_EQ(bench.bay->applied.back(), Applied(-1, 0));
    EXPECT_EQ(bench.Flags("notesInScale"), (Degrees{0, 1}));
    EXPECT_EQ(bench.Element("scale").GetDiscrete(), 3);
}

TEST(ZPsolaBayScalesTest, CopiesBetweenElementsNeedNoEngineAndScalesDo)
{
    PsolaBayBench<ScaleBay> bench;
    bench.SetFlags("notesInScale", {0, 6});
    EXPECT_EQ(bench.Flags("currentCustomScale"), (Degrees{0, 6}));
    EXPECT_EQ(bench.Element("currentScaleModified").GetDiscrete(), 1);
    bench.SetDiscrete("scale", 3);
    EXPECT_EQ(bench.Flags("notesInScale"), (Degrees{0, 6}));
    EXPECT_TRUE(bench.bay->applied.empty());
}

TEST(ZPsolaBayScalesTest, TheUserIsToldOnceWhenTheArchiveIsFull)
{
    BoxRecorder recorder;
    Bench bench;
    bench.Add(15);
    EXPECT_TRUE(recorder.boxes.empty());
    bench.Add(3);
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].kind, ZMessageBox::kWarning);
    EXPECT_TRUE(recorder.boxes[0].text.starts_with(
        "You have added the maximum number of custom scales that may be saved in a preset"));
    bench.SetDiscrete("scale", 21);
    EXPECT_EQ(bench.Flags("notesInScale"), (Degrees{0, 3}));
}

TEST(ZPsolaBayScalesTest, SixteenScalesComeBackAndTheSeventeenthIsANameOnly)
{
    const BoxRecorder recorder;
    Bench bench;
    bench.Add(17);
    bench.SetDiscrete("scale", 19);
    const std::string archive = archiveOf(*bench.bay);

    Bench other;
    other.Add(2);
    other.Restore(archive);
    EXPECT_EQ(namesOf(other.Element("scale")), namesOf(bench.Element("scale")));
    EXPECT_EQ(other.Element("scale").GetDiscrete(), 19);
    EXPECT_EQ(other.Flags("notesInScale"), (Degrees{0, 5}));
    for (std::int32_t scale = 0; scale < 16; ++scale) {
        other.SetDiscrete("scale", 4 + scale);
        EXPECT_EQ(other.Flags("notesInScale"), (Degrees{0, scale % 11 + 1}));
    }
    other.SetDiscrete("scale", 20);
    EXPECT_EQ(other.Flags("notesInScale").size(), 12u);
    other.SetDiscrete("scale", 19);
    EXPECT_TRUE(archiveOf(*other.bay) == archive);

    Bench few;
    few.bay->AddCustomScale("Odd", Degrees{11, 0, -1, 12, 3, 11});
    few.SetDiscrete("scale", 4);
    EXPECT_EQ(few.Flags("notesInScale"), (Degrees{0, 3, 11})) << "degrees only";
    archiveOf(*few.bay);
    EXPECT_EQ(few.Element("customScaleTones").GetZBuffer()->Data()[12], 0.0f) << "an unused row";
}

TEST(ZPsolaBayScalesTest, EditedNotesComeBackAndSavingThemTellsNobody)
{
    Bench bench;
    bench.SetDiscrete("scale", 2);
    bench.SetFlags("notesInScale", {0, 1, 10});
    bench.Tick();
    const std::string archive = archiveOf(*bench.bay);
    EXPECT_FALSE(bench.Element("customScaleTones").IsMarkedChanged());
    EXPECT_FALSE(bench.Element("currentScaleIndex").IsMarkedChanged());
    EXPECT_FALSE(bench.application.HasMessages());
    Bench other;
    other.Restore(archive);
    other.Tick();
    EXPECT_EQ(other.Flags("notesInScale"), (Degrees{0, 1, 10}));
    EXPECT_EQ(other.Element("currentScaleModified").GetDiscrete(), 1);
    EXPECT_EQ(other.Element("scale").GetDiscrete(), 2);
}

TEST(ZPsolaBayScalesTest, ALoadWithFewerNamesLeavesNoScaleWithoutAName)
{
    Bench bench;
    bench.Add(3);
    bench.SetDiscrete("scale", 6);
    const std::string archive = archiveOf(*Bench().bay);
    bench.Restore(archive);
    EXPECT_EQ(bench.Element("scale").CountDiscreteValues(), 4);
    EXPECT_EQ(bench.Element("scale").GetDiscreteDefault(), 1);
    EXPECT_TRUE(archiveOf(*bench.bay) == archive);
}

TEST(ZPsolaBayScalesTest, ALoadWithNamesOnlyKeepsTheNumberOfTheScale)
{
    Bench bench;
    bench.Add(3);
    bench.SetDiscrete("scale", 6);
    bench.Element("CustomScaleNames")
        .RestoreBody(firstElement("<element name=\"CustomScaleNames\" type=\"ZDISCRETE\" "
                                  "int32value=\"0\"></element>"));
    bench.application.ProcessQueue();
    EXPECT_EQ(bench.Element("scale").GetDiscrete(), 6);
}

TEST(ZPsolaBayScalesTest, TheListShowsANameAsItWillBeSaved)
{
    Bench bench;
    bench.bay->AddCustomScale(ZString("\"A\" <b> & c\u00E9\t"), Degrees{1});
    const auto shown = namesOf(bench.Element("scale"));
    EXPECT_EQ(shown[4], "'A' \u2039b\u203A & c\u00E9\t");
    Bench other;
    other.Restore(archiveOf(*bench.bay));
    EXPECT_EQ(namesOf(other.Element("scale")), shown);
}

}  // namespace orvane
