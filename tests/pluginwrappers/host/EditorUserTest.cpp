// SPDX-License-Identifier: GPL-3.0-or-later
// A user of the library's window with real keys and the context menu, on a virtual display, at
// several scales.

#include "PluginLibrary.h"
#include "support/PrivateFolder.h"
#include "support/VirtualDisplayTest.h"

#include <xkbcommon/xkbcommon-keysyms.h>

using namespace orvane;

namespace
{

using Notes = std::vector<std::string>;

constexpr std::int32_t kCorrectPitch = 0;
constexpr std::int32_t kKey = 2;
constexpr std::int32_t kCorrectionTime = 4;
constexpr std::uint32_t kRing = 0xFFCC66;
constexpr std::uint32_t kTipGround = 0x262629;
constexpr std::uint8_t kRightButton = 3;

// Points of the window, in units.
constexpr xcb_point_t kEmpty{300, 60};
constexpr xcb_point_t kSlider{70, 203};
constexpr xcb_point_t kPitch{100, 122};

struct EditorUserTest : VirtualDisplayTest
{
    void Begin() override
    {
        effect = host.Open();
        ask(effect, effSetBlockSize, 0, 256);
        ask(effect, effMainsChanged, 0, 1);
    }
    void TearDown() override
    {
        if (effect)
            closeEffect(effect);
    }

    /// Opens the window in a parent at 20, 10, at the scale of the display's setting.
    void OpenWindow(double byDisplay = 1.0)
    {
        scale = byDisplay;
        probe->SetResources("Xft.dpi:\t" + std::to_string(static_cast<int>(96 * scale)) + "\n");
        // With room for every scale, as a host makes that grants it.
        parent = probe->MakeWindow({kLeft, kTop, 1000, 750});
        ASSERT_EQ(openEditor(effect, parent), 1);
        probe->Focus(probe->GetChildren(parent).front());
        ASSERT_EQ(WindowSize(), editorSize(effect));
        TestHost::TakeNotes();
    }
    void CloseWindow()
    {
        ask(effect, effEditClose);
        probe->Destroy(parent);
    }
    [[nodiscard]] std::pair<int, int> WindowSize()
    {
        const auto place = probe->GetPlace(probe->GetChildren(parent).at(0));
        return {place.width, place.height};
    }
    void PointAt(const xcb_point_t& unit)
    {
        probe->MovePointer(kLeft + static_cast<int>(unit.x * scale),
                           kTop + static_cast<int>(unit.y * scale));
    }
    /// Waits for a menu or a dialog and gives it the keys, as window managers do.
    [[nodiscard]] xcb_window_t Appears()
    {
        xcb_window_t found = XCB_NONE;
        EXPECT_TRUE(waitFor([&] {
            found = probe->GetChildren(probe->GetRoot()).back();
            // Tips come and go as well, but are low.
            if (found == parent || probe->GetPlace(found).height < 60 * scale)
                return false;
            probe->Focus(found);
            return probe->GetFocus() == found;
        }));
        return found;
    }
    /// Waits until a window is gone, and until what its end has begun is done.
    [[nodiscard]] bool IsGone(xcb_window_t window)
    {
        const bool isGone = waitFor([&] {
            const auto windows = probe->GetChildren(probe->GetRoot());
            return std::ranges::count(windows, window) == 0;
        });
        ask(effect, effEditIdle);
        return isGone;
    }
    /// Opens the context menu at a point by a quick click and chooses by keys.
    void Choose(const xcb_point_t& unit, const std::string& keys)
    {
        PointAt(unit);
        probe->Click(kRightButton);
        const xcb_window_t menu = Appears();
        probe->Type(keys + "\r");
        ASSERT_TRUE(IsGone(menu));
    }
    /// Chooses "Enter Value..." over a control and types a value in the dialog.
    void EnterValue(const xcb_point_t& unit, const std::string& value)
    {
        Choose(unit, "e");
        const xcb_window_t dialog = Appears();
        probe->Type(value + "\r");
        ASSERT_TRUE(IsGone(dialog));
    }
    /// Clicks at a point of a dialog, in units.
    void ClickIn(xcb_window_t dialog, const xcb_point_t& unit)
    {
        const auto place = probe->GetPlace(dialog);
        probe->MovePointer(place.x + static_cast<int>(unit.x * scale),
                           place.y + static_cast<int>(unit.y * scale));
        probe->Click(1);
    }
    /// Expects the host to hear this since the last call, and no more.
    static void ExpectHeard(const Notes& expected)
    {
        Notes heard;
        static_cast<void>(waitFor([&] {
            std::ranges::move(TestHost::TakeNotes(), std::back_inserter(heard));
            return heard.size() >= expected.size();
        }));
        EXPECT_EQ(heard, expected);
    }
    [[nodiscard]] bool HasValue(std::int32_t parameter, float value) const
    {
        return waitFor([&] { return effect->getParameter(effect, parameter) == value; });
    }
    /// Returns whether the ring comes to be around what begins at x, y in units of the window.
    [[nodiscard]] bool RingIsAt(int x, int y)
    {
        const auto at = [this](int unit) { return static_cast<int>(unit * scale); };
        return waitFor([&] {
            return probe->PixelAt(kLeft + at(x - 3), kTop + at(y - 3)) == kRing &&
                   probe->PixelAt(kLeft + at(x - 1) - 1, kTop + at(y)) == kRing &&
                   probe->PixelAt(kLeft + at(x) - 1, kTop + at(y)) == 0;
        });
    }
    /// Returns the value of an element in the current program's text.
    [[nodiscard]] std::string Saved(const std::string& element)
    {
        const std::string text = chunkOf(effect, true);
        const auto at = text.find("name=\"" + element + "\"");
        return text.substr(at, text.find('>', at) - at);
    }

    static constexpr std::int16_t kLeft = 20;
    static constexpr std::int16_t kTop = 10;

    const PrivateFolder folder;
    const EnvironmentVariable settings{"XDG_CONFIG_HOME", folder.Path().c_str()};
    const LibraryHost host;
    AEffect* effect = nullptr;
    xcb_window_t parent = XCB_NONE;
    double scale = 1.0;
};

TEST_F(EditorUserTest, ATypedValueIsOneGestureAtEveryScale)
{
    for (const double each : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(each);
        OpenWindow(each);
        EnterValue(kSlider, "0.1 s");
        EXPECT_TRUE(HasValue(kCorrectionTime, 0.25f));
        ExpectHeard(Notes{"begin 4", "4=250", "end 4"});
        // What is out of the range, or no number, leaves the dialog open.
        EnterValue(kSlider, "999\rx\r50");
        ExpectHeard(Notes{"begin 4", "4=125", "end 4"});
        CloseWindow();
    }
}

TEST_F(EditorUserTest, ADialogThatIsDismissedChangesNothing)
{
    OpenWindow();
    for (const int way : {0, 1, 2}) {
        Choose(kSlider, "e");
        const xcb_window_t dialog = Appears();
        probe->Type("0");
        if (way == 0)
            probe->Type("\x1b");
        else if (way == 1)
            ClickIn(dialog, {217, 102});  // Cancel
        else
            probe->SendMessage(dialog, "WM_PROTOCOLS", probe->GetAtom("WM_DELETE_WINDOW"));
        EXPECT_TRUE(IsGone(dialog));
    }
    EXPECT_EQ(TestHost::TakeNotes(), Notes{});
    EXPECT_TRUE(HasValue(kCorrectionTime, 0.125f));
}

TEST_F(EditorUserTest, ShiftsAreTypedInCentsAndTheHostHearsOfChoices)
{
    OpenWindow();
    EnterValue(kPitch, "150");
    EXPECT_NE(Saved("PitchShift").find("150"), std::string::npos) << Saved("PitchShift");
    EXPECT_NE(Saved("FormantShift").find("75"), std::string::npos) << "natural formants follow";
    EXPECT_EQ(TestHost::TakeNotes(), Notes{}) << "no parameter says so";
    EnterValue(kPitch, "700");
    ExpectHeard(Notes{"begin 5", "5=208", "end 5"});
    EXPECT_TRUE(waitFor([&] { return Saved("PitchShift").find("700") != std::string::npos; }));
}

TEST_F(EditorUserTest, AChosenScaleIsAskedForAndKept)
{
    TestHost::Answer(audioMasterSizeWindow, 1);
    OpenWindow();
    Choose(kEmpty, "w>2");
    EXPECT_TRUE(waitFor([&] { return WindowSize() == std::pair(908, 860); }));
    const auto calls = TestHost::Calls();
    const auto asked = std::ranges::find(calls, audioMasterSizeWindow, &HostCall::opcode);
    ASSERT_NE(asked, calls.end());
    EXPECT_EQ(std::pair(asked->index, asked->value), std::pair(908, std::intptr_t{860}));
    const auto saved = readTextFile(folder.Path("Orvane/com.orvane.cantorel-mini-vst.conf"));
    EXPECT_NE(saved.find("WindowScale=200"), std::string::npos);
    // The window takes the mouse in its new pixels.
    scale = 2.0;
    TestHost::TakeNotes();
    EnterValue(kSlider, "100");
    ExpectHeard(Notes{"begin 4", "4=250", "end 4"});
}

TEST_F(EditorUserTest, ThePitchGraphUnfoldsWhenTheHostMakesRoomOrElseWithTheNextWindow)
{
    constexpr std::pair kFolded(681, 645);
    constexpr std::pair kUnfolded(681, 921);
    OpenWindow(1.5);
    Choose(kEmpty, "pppp");
    EXPECT_TRUE(waitFor([] { return TestHost::CountOf(audioMasterSizeWindow) == 1; }));
    EXPECT_EQ(WindowSize(), kFolded) << "the host has refused";
    CloseWindow();
    EXPECT_EQ(editorSize(effect), kUnfolded);
    AEffect* const other = host.Open();
    EXPECT_EQ(editorSize(other), kUnfolded) << "kept in the user's settings";
    closeEffect(other);

    TestHost::Answer(audioMasterSizeWindow, 1);
    OpenWindow(1.5);
    PointAt({440, 480});
    EXPECT_TRUE(waitFor([&] {
        const int y = kTop + static_cast<int>(432 * scale);  // just above the plot
        for (int x = 380; x < 450; ++x)
            if (probe->PixelAt(kLeft + static_cast<int>(x * scale), y) == kTipGround)
                return true;
        return false;
    })) << "no tip tells the pitches";
    // On the graph's own ground: closing the fold destroys the view below the menu.
    Choose({220, 470}, "pppp");
    EXPECT_TRUE(waitFor([&] { return WindowSize() == kFolded; }));
    Choose(kEmpty, "pppp");
    EXPECT_TRUE(waitFor([&] { return WindowSize() == kUnfolded; }));
    EXPECT_EQ(editorSize(effect), kUnfolded);
}

TEST_F(EditorUserTest, TheMenuKeyAndShiftF10OpenTheMenuForTheControlWithTheRing)
{
    OpenWindow();
    PointAt(kEmpty);
    probe->Click(1);
    ASSERT_TRUE(waitFor([&] { return probe->GetFocus() == probe->GetChildren(parent).front(); }));
    const auto heightBy = [&](const std::function<void()>& type) {
        static_cast<void>(probe->TakeKeys());
        type();
        const xcb_window_t menu = Appears();
        for (const std::uint32_t key : probe->TakeKeys())
            EXPECT_EQ(key, std::uint32_t{XKB_KEY_Shift_L}) << "the host hears no more than that";
        const int height = probe->GetPlace(menu).height;
        probe->Type("\x1b");
        EXPECT_TRUE(IsGone(menu));
        return height;
    };
    EXPECT_EQ(heightBy([&] { probe->TypeKey(XKB_KEY_Menu); }), 15 * 19 + 6) << "of the window";
    probe->Type("\t");
    EXPECT_EQ(heightBy([&] { probe->TypeWith(XKB_KEY_Shift_L, XKB_KEY_F10); }), 16 * 19 + 6)
        << "with a reset of the first control";
}

TEST_F(EditorUserTest, KeysLeadFromTheOpeningToANamedScale)
{
    OpenWindow(2.0);
    probe->Type("\t\t\t\t\t");
    EXPECT_TRUE(RingIsAt(15, 157)) << "CORRECT PITCH";
    probe->Type(" ");
    EXPECT_TRUE(HasValue(kCorrectPitch, 1.0f));
    probe->Type("\t]");
    EXPECT_TRUE(HasValue(kCorrectionTime, 1.0f));
    EXPECT_EQ(TestHost::OpenGestures(), 0);
    probe->Type("\t\t\r");
    const xcb_window_t menu = Appears();
    probe->Type("[\r");
    EXPECT_TRUE(IsGone(menu));
    EXPECT_TRUE(HasValue(kKey, 0.0f)) << "the first key";
    probe->Type("\t\t\t\t\t> ");
    probe->TypeWith(XKB_KEY_Shift_L, XKB_KEY_Tab);
    EXPECT_TRUE(RingIsAt(16, 345)) << "ADD SCALE";
    probe->Type(" ");
    const xcb_window_t dialog = Appears();
    probe->TypeWith(XKB_KEY_Control_L, XKB_KEY_a);
    probe->Type("keys");
    ClickIn(dialog, {229, 122});  // OK
    EXPECT_TRUE(IsGone(dialog));
    EXPECT_TRUE(
        waitFor([&] { return chunkOf(effect, true).find("\"keys\"") != std::string::npos; }));
}

}  // namespace
