// SPDX-License-Identifier: GPL-3.0-or-later
// The shipped window's context menu: what it offers over each view, and what the host hears.

#include "pluginwrappers/common/WindowUse.h"
#include "support/TestClipboard.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/views/ZEditGesture.h"

using namespace orvane;

namespace
{

using Path = std::vector<std::string>;

/// Answers the context menu by the path of labels to an item.
struct ContextMenuUseTest : WindowUse
{
    ContextMenuUseTest()
    {
        for (int i = 0; i < 3; ++i)
            product->Tick();
        TestHost::TakeNotes();
    }

    /// Opens the menu over a view, "" for the ground, and chooses the item at the path; returns
    /// what the host hears of it by the next tick.
    Notes Choose(const std::string& view, const Path& path)
    {
        mPath = path;
        mFound = false;
        Open(view);
        EXPECT_TRUE(mFound) << path.back();
        product->Tick();
        return TestHost::TakeNotes();
    }
    /// Returns the lines of the menu over a view, or of a submenu: a check mark as "*", what cannot
    /// be chosen in brackets, what opens a submenu with ">" behind it.
    Notes Lines(const std::string& view, const Path& submenu = {})
    {
        mPath = submenu;
        mPath.emplace_back();
        Open(view);
        return mLines;
    }

private:
    void Open(const std::string& view)
    {
        Mouse(ZNativeMouseEvent::kContext, view.empty() ? ZPoint{300, 60} : At(view, {5, 8}));
    }
    std::optional<std::int32_t> Answer(const ZMenu& menu) override
    {
        const ZMenu* open = &menu;
        for (std::size_t i = 0; i < mPath.size(); ++i) {
            mLines.clear();
            for (const ZMenu::Item& each : open->GetItems()) {
                const std::string text = each.text.ToNarrow();
                mLines.push_back((each.checked ? "*" : "") +
                                 (each.enabled ? text : "(" + text + ")") +
                                 (each.submenu ? " >" : ""));
            }
            const auto item = std::ranges::find_if(open->GetItems(), [&](const auto& each) {
                return each.text.ToNarrow() == mPath[i];
            });
            if (item == open->GetItems().end())
                return std::nullopt;
            if (!item->submenu) {
                mFound = item->enabled && i + 1 == mPath.size();
                return mFound ? std::optional(item->index) : std::nullopt;
            }
            open = item->submenu.get();
        }
        return std::nullopt;
    }
    Path mPath;
    bool mFound = false;
    Notes mLines;
};

TEST_F(ContextMenuUseTest, OffersWhatTheWindowHasNoControlsFor)
{
    EXPECT_EQ(Lines(""),
              (Notes{"Programs >", "Save Settings...", "Load Settings...", "Reset Settings",
                     "Copy Settings", "Paste Settings", "Preset Memories >", "Tracking >",
                     "Intonation >", "Detune...", "Reference Source >", "MIDI Input", "Pitch Graph",
                     "Window Scale >", "About Cantorel Mini"}));
    EXPECT_EQ(Lines("", {"Tracking"}), (Notes{"*Classic", "Fine"}));
    EXPECT_EQ(Lines("", {"Reference Source"}), (Notes{"Left", "Right", "*Stereo"}));
    EXPECT_EQ(Lines("", {"Intonation"}).size(), 10u);
    EXPECT_EQ(Lines("", {"Programs"}).size(), 7u);
    EXPECT_EQ(Lines("PitchCorrectionTimeSlider")[0], "(Reset to Default)");
    EXPECT_EQ(Lines("PitchCorrectionTimeSlider")[1], "Enter Value...");
    EXPECT_EQ(Lines("correctionMeter")[0], "Programs >") << "nothing of the user's to set";
    const BoxRecorder boxes;
    Choose("", {"About Cantorel Mini"});
    ASSERT_EQ(boxes.boxes.size(), 1u);
    for (const char* part : {"Cantorel Mini 1.0.0", "General Public License", "LV2"})
        EXPECT_NE(boxes.boxes[0].text.find(part), std::string::npos) << part;
}

TEST_F(ContextMenuUseTest, ProgramsAndMemoriesReachTheHostAsValues)
{
    EXPECT_EQ(Lines("", {"Programs"})[0].front(), '*');
    const std::string third = Lines("", {"Programs"})[2];
    const Notes heard = Choose("", {"Programs", third});
    EXPECT_FALSE(heard.empty());
    EXPECT_EQ(std::ranges::count_if(heard, [](auto& note) { return note.starts_with("begin"); }), 0)
        << "a load is no gesture";
    EXPECT_EQ(product->Ask(effGetProgram), 2);
    EXPECT_EQ(Lines("", {"Programs"})[2], "*" + third);

    Choose("", {"Preset Memories", "Save To Preset Memory B"});
    EXPECT_EQ(Lines("", {"Preset Memories"})[4], "(Recall Preset Memory A)");
    Element("key").SetDiscrete(7, false);
    product->Tick();
    TestHost::TakeNotes();
    const Notes recalled = Choose("", {"Preset Memories", "Recall Preset Memory B"});
    EXPECT_EQ(std::ranges::count(recalled, "2=273"), 1) << "the key as before";
    EXPECT_EQ(std::ranges::count(recalled, "begin 2"), 0);
    EXPECT_EQ(Lines("", {"Preset Memories"})[5], "*Recall Preset Memory B");
}

TEST_F(ContextMenuUseTest, WhatIsNoParameterMarksTheStateAndIsSaved)
{
    const std::pair<Path, const char*> choices[] = {
        {{"Tracking", "Fine"}, "tracking"},
        {{"Intonation", "Arabic"}, "intonation"},
        {{"Reference Source", "Left"}, "pitchReference"},
    };
    for (const auto& [path, name] : choices) {
        SCOPED_TRACE(name);
        const int before = Element(name).GetDiscrete();
        const std::string saved = product->Program();
        TestHost::TakeNotes();
        Choose("", path);
        EXPECT_NE(Element(name).GetDiscrete(), before);
        EXPECT_NE(product->Program(), saved);
        EXPECT_EQ(Lines("", {path[0]})[static_cast<std::size_t>(Element(name).GetDiscrete())],
                  "*" + path[1]);
    }
    Choose("", {"MIDI Input"});
    EXPECT_EQ(Element("AcceptMIDI").GetDiscrete(), 1);
    Choose("", {"MIDI Input"});
    EXPECT_EQ(Element("AcceptMIDI").GetDiscrete(), 0);
    Choose("", {"Reset Settings"});
    EXPECT_EQ(Lines("", {"Tracking"})[0], "*Classic");
}

TEST_F(ContextMenuUseTest, AResetOfAControlIsAGesture)
{
    Element("key").SetDiscrete(7, false);
    Element("pitchCorrectionTime").SetZFloat(200.0f, false);
    Element("ignoredNotes").GetZBuffer()->Data()[3] = 1.0f;
    product->Tick();
    TestHost::TakeNotes();
    EXPECT_EQ(Choose("KeyMenu", {"Reset to Default"}), (Notes{"begin 2", "2=273", "end 2"}));
    EXPECT_EQ(Choose("PitchCorrectionTimeSlider", {"Reset to Default"}),
              (Notes{"begin 4", "4=125", "end 4"}));
    EXPECT_EQ(Lines("KeyMenu")[0], "(Reset to Default)");
    Choose("IgnoreKeys", {"Reset to Default"});
    EXPECT_EQ(Element("ignoredNotes").GetZBuffer()->Data()[3], 0.0f);
}

TEST_F(ContextMenuUseTest, EditsOfOneControlThatOverlapAreOneGestureToTheHost)
{
    // The host's calls stand for the time in which the event loop goes on.
    const auto key = product->app->GetCurrentDocument()->FindElement("key");
    const auto edit = [&](std::int32_t value) { locked([&] { editDiscrete(key, value); }); };
    bool isFirst = true;
    TestHost::On(audioMasterBeginEdit, [&](AEffect*) {
        if (std::exchange(isFirst, false))
            edit(5);
    });
    edit(7);
    product->Tick();
    EXPECT_EQ(TestHost::TakeNotes(), (Notes{"begin 2", "2=636", "end 2"}));

    std::optional<ZEditGesture> next;
    TestHost::On(audioMasterEndEdit, [&](AEffect*) {
        if (!next)
            locked([&] { next.emplace(key); });
    });
    edit(3);
    EXPECT_EQ(TestHost::TakeNotes(), (Notes{"begin 2", "2=273", "end 2", "begin 2"}));
    locked([&] { next->End(); });
    EXPECT_EQ(TestHost::TakeNotes(), Notes{"end 2"});
}

TEST_F(ContextMenuUseTest, AShiftThatIsNotWhatTheChoiceSaysIsTold)
{
    EXPECT_EQ(Lines("TransposePitchPopup")[0], "(Reset to Default)");
    Element("PitchShift").SetZFloat(150.0f, false);
    Element("FormantShift").SetZFloat(-30.5f, false);
    product->Tick();
    EXPECT_EQ(Lines("TransposePitchPopup")[0], "(+150 cents, not what the choice says)");
    EXPECT_EQ(Lines("TransposeFormantPopup")[0], "(-30.5 cents, not what the choice says)");
    TestHost::TakeNotes();
    Choose("TransposePitchPopup", {"Reset to Default"});
    product->Tick();
    EXPECT_EQ(Element("PitchShift").GetZFloat(), 0.0f);
    EXPECT_EQ(Lines("TransposePitchPopup")[0], "(Reset to Default)");
}

TEST_F(ContextMenuUseTest, SettingsAreCopiedAndPastedAsTextAndAnythingElseIsRefused)
{
    TestClipboard clipboard;
    const BoxRecorder boxes;
    Element("key").SetDiscrete(7, false);
    Element("detune").SetZFloat(12.5f, false);
    product->Tick();
    Choose("", {"Copy Settings"});
    ASSERT_TRUE(clipboard.content);
    Choose("", {"Reset Settings"});
    EXPECT_EQ(Element("key").GetDiscrete(), 3);
    Choose("", {"Paste Settings"});
    EXPECT_EQ(Element("key").GetDiscrete(), 7);
    EXPECT_EQ(Element("detune").GetZFloat(), 12.5f);
    const std::string saved = product->Program();
    EXPECT_TRUE(boxes.boxes.empty());

    const std::optional<std::string> others[] = {std::nullopt,
                                                 "a shopping list",
                                                 "<preset></preset>",
                                                 "<html><body></body></html>",
                                                 "",
                                                 std::string((std::size_t{16} << 20U) + 1, 'x')};
    for (const auto& other : others) {
        clipboard.content = other;
        Choose("", {"Paste Settings"});
        EXPECT_EQ(product->Program(), saved);
    }
    EXPECT_EQ(boxes.boxes.size(), std::size(others));
    for (const ShownBox& box : boxes.boxes)
        EXPECT_EQ(box.title, "Could not paste settings");
}

TEST_F(ContextMenuUseTest, AScaleOrAGraphThatWaitsIsToldAndCanBeTakenBack)
{
    EXPECT_EQ(Lines("", {"Window Scale"}),
              (Notes{"100 %", "125 %", "150 %", "175 %", "200 %", "250 %", "300 %",
                     "*As the host or display says"}));
    Choose("", {"Window Scale", "200 %"});
    EXPECT_EQ(Lines("", {"Window Scale"})[0], "*100 %");
    EXPECT_EQ(Lines("", {"Window Scale"})[4], "200 % (when the window opens next)");
    EXPECT_EQ(window->GetPixelSize(), (ZPoint{908, 860}));
    Choose("", {"Window Scale", "As the host or display says"});
    Choose("", {"Pitch Graph"});
    EXPECT_EQ(Lines("")[12], "Pitch Graph (when the window opens next)");
    Choose("", {"Pitch Graph (when the window opens next)"});
    EXPECT_EQ(Lines("")[12], "Pitch Graph");
    EXPECT_EQ(window->GetPixelSize(), (ZPoint{454, 430}));
}

}  // namespace
