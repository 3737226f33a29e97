// SPDX-License-Identifier: GPL-3.0-or-later
// What the host learns of the work in the shipped window, and what it may do meanwhile.

#include "kestrune/common/views/KestruneKeyboardView.h"
#include "pluginwrappers/common/ProductInstance.h"
#include "pluginwrappers/interface/VstKeyCode.h"
#include "pluginwrappers/interface/WindowPicture.h"
#include "support/Measure.h"
#include "support/Signals.h"
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/controls/ZPopupMenu.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace orvane
{

namespace
{

using Notes = std::vector<std::string>;

/// Operates the shipped window without a display. A menu returns what choose returns. The plug-in
/// ticks only when the test calls Tick.
class EditorUseTest : public testing::Test
{
protected:
    EditorUseTest()
        : mMenusBefore(ZMenu::SetPresenter([this](const ZMenu& menu, const ZPoint&, ZWindow*) {
            shownMenu.clear();
            for (const ZMenu::Item& item : menu.GetItems())
                shownMenu.push_back(item.text.ToNarrow());
            return choose();
        }))
    {
        product = std::make_unique<ProductInstance>(TestHost::callback);
        window = MainWindow();
    }
    ~EditorUseTest() override { ZMenu::SetPresenter(mMenusBefore); }

    /// Returns the main window with its views attached to their elements.
    [[nodiscard]] boost::shared_ptr<ZWindow> MainWindow() const
    {
        const ZInterfaceLock lock;
        const auto main = product->app->GetMainWindow();
        main->AttachViews();
        product->app->Tick();
        return main;
    }
    /// Converts a view's point to the window's coordinates.
    [[nodiscard]] ZPoint At(const std::string& view, const ZPoint& point) const
    {
        const ZPoint origin = Find(view).GetWindowOrigin();
        return {origin.x + point.x, origin.y + point.y};
    }
    [[nodiscard]] ZView& Find(const std::string& view) const
    {
        const auto found = window->GetRootView()->FindSubview(view);
        if (!found)
            throw std::runtime_error("no view " + view);
        return *found;
    }
    void Mouse(ZNativeMouseEvent::Action action, const ZPoint& at,
               std::uint32_t mods = ZView::kMouseButton, std::int32_t notches = 0) const
    {
        const ZInterfaceLock lock;
        window->NativeMouse({action, at, mods, notches});
    }
    void Click(const std::string& view, const ZPoint& point = {5, 5},
               std::uint32_t mods = ZView::kMouseButton) const
    {
        const ZPoint at = At(view, point);
        Mouse(ZNativeMouseEvent::kMove, at, mods);
        Mouse(ZNativeMouseEvent::kDown, at, mods);
        Mouse(ZNativeMouseEvent::kUp, at, mods);
    }
    void ChooseInMenu(const std::string& view, std::int32_t index)
    {
        choose = [index] { return index; };
        Click(view);
    }
    [[nodiscard]] std::string TextOf(const std::string& view) const
    {
        return dynamic_cast<const ZPopupMenu&>(Find(view)).GetText().ToNarrow();
    }
    ZElement& Element(const std::string& name) const { return product->Element(name); }

    const TestHost host;
    std::unique_ptr<ProductInstance> product;
    boost::shared_ptr<ZWindow> window;
    std::function<std::optional<std::int32_t>()> choose = [] { return std::nullopt; };
    std::vector<std::string> shownMenu;

private:
    ZMenu::Presenter mMenusBefore;
};

TEST_F(EditorUseTest, ADragOfTheSliderIsOneGestureThatEndsWithTheLastValue)
{
    const ZPoint thumb = At("PitchCorrectionTimeSlider", {0, 8});
    Mouse(ZNativeMouseEvent::kMove, thumb);
    Mouse(ZNativeMouseEvent::kDown, thumb);
    EXPECT_EQ(TestHost::TakeNotes(), (Notes{"begin 4"}));
    product->Tick();
    TestHost::TakeNotes();

    Mouse(ZNativeMouseEvent::kMove, {thumb.x + 40, thumb.y});
    Mouse(ZNativeMouseEvent::kMove, {5000, -300});  // outside the window
    product->Tick();
    EXPECT_EQ(TestHost::TakeNotes(), (Notes{"4=1000"})) << "only the newest value, once per tick";
    Mouse(ZNativeMouseEvent::kUp, {thumb.x + 40, thumb.y});
    EXPECT_EQ(TestHost::TakeNotes(), (Notes{"4=300", "end 4"}));
    Mouse(ZNativeMouseEvent::kMove, {thumb.x + 60, thumb.y});
    product->Tick();
    EXPECT_EQ(TestHost::TakeNotes(), Notes{}) << "a move after the release changes nothing";

    Mouse(ZNativeMouseEvent::kWheel, thumb, 0, -10);
    const Notes wheel = TestHost::TakeNotes();
    ASSERT_EQ(wheel.size(), 3u);
    EXPECT_EQ(wheel[0] + ", " + wheel[2], "begin 4, end 4");

    // While the thumb is held, the wheel belongs to the drag.
    Mouse(ZNativeMouseEvent::kDown, thumb);
    Mouse(ZNativeMouseEvent::kWheel, thumb, ZView::kMouseButton, -1);
    Mouse(ZNativeMouseEvent::kUp, thumb);
    const Notes drag = TestHost::TakeNotes();
    EXPECT_EQ(std::ranges::count(drag, "begin 4") + std::ranges::count(drag, "end 4"), 2);
}

TEST_F(EditorUseTest, MenusAndSwitchesNotifyTheHostInOneGestureIfTheyHaveAParameter)
{
    const std::tuple<const char*, const char*, std::string> menus[] = {
        {"TypeMenu", "sourceType", "3"},
        {"TransposePitchPopup", "pitchTranspose", "5"},
        {"TransposeFormantPopup", "formantTranspose", "6"},
        {"KeyMenu", "key", "2"}};
    for (const auto& [view, name, index] : menus) {
        SCOPED_TRACE(view);
        ZElement& element = Element(name);
        const std::int32_t last = element.CountDiscreteValues() - 1;
        for (const std::int32_t i : {last, 0}) {
            ChooseInMenu(view, i);
            EXPECT_EQ(element.GetDiscrete(), i);
            EXPECT_EQ(TextOf(view), shownMenu[static_cast<std::size_t>(i)]);
            EXPECT_EQ(TestHost::TakeNotes(),
                      (Notes{"begin " + index, index + (i == 0 ? "=0" : "=1000"), "end " + index}));
            product->Tick();
            EXPECT_EQ(TestHost::TakeNotes(), Notes{});
        }
    }
    Click("Transpose Enable");
    EXPECT_EQ(TestHost::TakeNotes(), (Notes{"begin 1", "1=1000", "end 1"}));
    const ZPoint box = At("Transpose Enable", {5, 5});
    Mouse(ZNativeMouseEvent::kDoubleClick, box);  // the second press of a double click counts, too
    Mouse(ZNativeMouseEvent::kUp, box);
    Click("Pitch Correction Enable");
    EXPECT_EQ(TestHost::TakeNotes(),
              (Notes{"begin 1", "1=0", "end 1", "begin 0", "0=1000", "end 0"}));
    ChooseInMenu("ScaleMenu", 0);
    Click("AcceptsMIDIButton");
    EXPECT_EQ(Element("AcceptMIDI").GetDiscrete(), 1);
    EXPECT_EQ(TestHost::TakeNotes(), Notes{}) << "neither is a parameter";
}

TEST_F(EditorUseTest, ADoubleClickRestoresASliderInOneGesture)
{
    const ZPoint slider = At("PitchCorrectionTimeSlider", {90, 8});
    ZElement& time = Element("pitchCorrectionTime");
    time.SetZFloat(time.Max(), true);
    TestHost::TakeNotes();
    Mouse(ZNativeMouseEvent::kDoubleClick, slider);
    Mouse(ZNativeMouseEvent::kMove, {slider.x + 10, slider.y});
    Mouse(ZNativeMouseEvent::kUp, slider);
    EXPECT_EQ(time.GetZFloat(), time.GetZFloatDefault());
    const Notes notes = TestHost::TakeNotes();
    ASSERT_EQ(notes.size(), 3u);
    EXPECT_EQ(notes.front() + ", " + notes.back(), "begin 4, end 4");
}

TEST_F(EditorUseTest, AClickedKeyBecomesATargetOfTheCorrectionAndIsShown)
{
    // In C major, whose keyboard begins at note 48. The voice is nearer to A# than to A or B.
    constexpr std::int32_t kASharp = 58;
    constexpr float kRate = 44100.0f;
    const auto& keys = dynamic_cast<const KestruneKeyboardView&>(Find("PianoKeyboard"));
    const auto expectPitch = [&](double hz, std::int32_t note) {
        const auto output = product->Play(harmonicTone(231.0, kRate, 512 * 160));
        const std::span<const float> end = std::span(output).last(16384);
        EXPECT_NEAR(centsBetween(measurePitch(end, kRate, hz), hz), 0.0, 3.0);
        product->Tick();
        product->Tick();
        EXPECT_EQ(keys.GetPlayingNote(), note);
    };
    Element("pitchCorrectionOnOff").SetDiscrete(1, false);
    Element("pitchCorrectionTime").SetZFloat(0.0f, false);
    expectPitch(220.0, 57);
    const ZRect rect = keys.GetUpperRect(kASharp);
    Click("PianoKeyboard", {(rect.left + rect.right) / 2, 60});
    product->Tick();
    EXPECT_TRUE(keys.IsKeyLit(kASharp));
    EXPECT_EQ(TextOf("ScaleMenu"), "\"  Major");
    expectPitch(233.082, kASharp);
}

TEST_F(EditorUseTest, TheWindowReceivesKeysAndRatesAndReturnsItsPicture)
{
    struct Recorder : ZWindowFilter
    {
        void FilterMessage(const ZMessage& message) override { ids.push_back(message.GetId()); }
        std::vector<std::int32_t> ids;
    } recorder;
    {
        const ZInterfaceLock lock;
        for (const std::int32_t id : {ZSAMPLERATECHANGED, ZTEXTINPUT})
            window->AddFilter(id, &recorder);
    }
    product->Ask(effSetSampleRate, 0, 0, nullptr, 96000.0f);
    product->Ask(effSetSampleRate, 0, 0, nullptr, 96000.0f);  // already set
    EXPECT_EQ(product->Ask(effEditKeyDown, 'q'), 1);
    EXPECT_EQ(product->Ask(effEditKeyDown, 0, VKEY_SPACE), 0);
    EXPECT_EQ(recorder.ids, (std::vector<std::int32_t>{ZSAMPLERATECHANGED, ZTEXTINPUT}));
    const ZInterfaceLock lock;
    for (const std::int32_t id : recorder.ids)
        window->RemoveFilter(id, &recorder);

    WindowPicture picture{};
    EXPECT_EQ(product->Ask(effVendorSpecific, kVendorOrvane, 0, &picture), 0);
    EXPECT_EQ(product->Ask(effVendorSpecific, kVendorOrvane, kVendorWindowPicture, nullptr), 0);
    EXPECT_EQ(picture.pixels, nullptr);
    EXPECT_EQ(product->Ask(effVendorSpecific, kVendorOrvane, kVendorWindowPicture, &picture), 1);
    EXPECT_EQ(picture.width * picture.height, 454 * 430);
}

TEST_F(EditorUseTest, ClosingOrHidingTheWindowEndsTheGesture)
{
    const ZPoint at = At("PitchCorrectionTimeSlider", {50, 8});
    const std::function<void()> ends[] = {
        [&] { product->Ask(effEditClose); },
        [&] {
            const ZInterfaceLock lock;
            window->Hide();
        },
        [&] {
            window.reset();
            product.reset();
        },
    };
    for (const auto& end : ends) {
        Mouse(ZNativeMouseEvent::kDown, at);
        EXPECT_EQ(TestHost::TakeNotes().front(), "begin 4");
        end();
        EXPECT_EQ(std::ranges::count(TestHost::TakeNotes(), "end 4"), 1);
    }
}

TEST_F(EditorUseTest, AHostMayCloseTheWindowFromInsideAGesture)
{
    const ZPoint at = At("PitchCorrectionTimeSlider", {50, 8});
    TestHost::On(audioMasterBeginEdit, [&](AEffect*) { product->Ask(effEditClose); });
    Mouse(ZNativeMouseEvent::kDown, at);
    EXPECT_EQ(TestHost::TakeNotes(), (Notes{"begin 4", "end 4"}));
    EXPECT_EQ(window->GetCapturedView(), nullptr);
    Mouse(ZNativeMouseEvent::kMove, {at.x + 20, at.y});
    Mouse(ZNativeMouseEvent::kUp, at);
    EXPECT_EQ(std::ranges::count(TestHost::TakeNotes(), "end 4"), 0);
}

TEST_F(EditorUseTest, ClosingThePluginWaitsForTheNotificationOfAGesture)
{
    for (const char* view : {"PitchCorrectionTimeSlider", "Transpose Enable"}) {
        SCOPED_TRACE(view);
        window.reset();
        product = std::make_unique<ProductInstance>(TestHost::callback);
        window = MainWindow();
        const ZPoint at = At(view, {5, 5});
        ZWindow* const kept = window.get();
        window.reset();
        std::thread closer;
        TestHost::On(audioMasterBeginEdit, [&](AEffect*) {
            closer = std::thread([&] { product.reset(); });
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        });
        TestHost::TakeNotes();
        {
            const ZInterfaceLock lock;
            kept->NativeMouse({ZNativeMouseEvent::kDown, at, ZView::kMouseButton, 0});
        }
        closer.join();
        const Notes notes = TestHost::TakeNotes();
        EXPECT_EQ(std::ranges::count(notes, notes.front()), 1);
        EXPECT_EQ(notes.front().substr(0, 5), "begin");
        EXPECT_EQ(notes.back().substr(0, 3), "end");
    }
}

}  // namespace

}  // namespace orvane
