// SPDX-License-Identifier: GPL-3.0-or-later
// What the host learns of the work in the shipped window, and what it may do meanwhile.

#include "kestrune/common/views/KestruneKeyboardView.h"
#include "pluginwrappers/common/ProductInstance.h"
#include "support/BoxRecorder.h"
#include "support/DisplayProbe.h"
#include "support/Measure.h"
#include "support/Signals.h"
#include "support/VirtualDisplay.h"
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/controls/ZPopupMenu.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"
#include "zlib/common/views/ZWindowFilter.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
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

/// Operates the shipped window without a display; a menu returns the choice. The plug-in ticks only
/// when the test calls Tick.
class EditorUseTest : public testing::Test
{
protected:
    EditorUseTest()
        : mMenusBefore(ZMenu::SetPresenter(
              [this](const ZMenu&, const ZPoint&, ZWindow*) { return mChoice; }))
    {
        const ZInterfaceLock lock;
        window = product->app->GetMainWindow();
        window->AttachViews();
        product->app->Tick();
    }
    ~EditorUseTest() override { ZMenu::SetPresenter(mMenusBefore); }

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
    void Mouse(ZNativeMouseEvent::Action action, const ZPoint& at) const
    {
        const ZInterfaceLock lock;
        window->NativeMouse({action, at, ZView::kMouseButton, 0});
    }
    void Click(const std::string& view, const ZPoint& point = {5, 5}) const
    {
        const ZPoint at = At(view, point);
        for (const auto action :
             {ZNativeMouseEvent::kMove, ZNativeMouseEvent::kDown, ZNativeMouseEvent::kUp})
            Mouse(action, at);
    }
    void ChooseInMenu(const std::string& view, std::int32_t index)
    {
        mChoice = index;
        Click(view);
    }
    ZElement& Element(const std::string& name) const { return product->Element(name); }

    const TestHost host;
    std::unique_ptr<ProductInstance> product =
        std::make_unique<ProductInstance>(TestHost::callback);
    boost::shared_ptr<ZWindow> window;

private:
    std::optional<std::int32_t> mChoice;
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

    Mouse(ZNativeMouseEvent::kDoubleClick, thumb);
    Mouse(ZNativeMouseEvent::kUp, thumb);
    EXPECT_EQ(TestHost::TakeNotes(), (Notes{"begin 4", "4=125", "end 4"})) << "the default";
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
        for (const std::int32_t i : {Element(name).CountDiscreteValues() - 1, 0}) {
            ChooseInMenu(view, i);
            EXPECT_EQ(Element(name).GetDiscrete(), i);
            EXPECT_EQ(TestHost::TakeNotes(),
                      (Notes{"begin " + index, index + (i == 0 ? "=0" : "=1000"), "end " + index}));
            product->Tick();
            EXPECT_EQ(TestHost::TakeNotes(), Notes{});
        }
    }
    Click("Transpose Enable");
    Click("Pitch Correction Enable");
    EXPECT_EQ(TestHost::TakeNotes(),
              (Notes{"begin 1", "1=1000", "end 1", "begin 0", "0=1000", "end 0"}));
    ChooseInMenu("ScaleMenu", 0);
    EXPECT_EQ(TestHost::TakeNotes(), Notes{}) << "no parameter";
}

TEST_F(EditorUseTest, AClickedKeyBecomesATargetOfTheCorrectionAndIsShown)
{
    // In C major, whose keyboard begins at note 48. The voice is nearer to A# than to A or B.
    constexpr std::int32_t kASharp = 58;
    constexpr float kRate = 44100.0f;
    const auto& keys = dynamic_cast<const KestruneKeyboardView&>(Find("PianoKeyboard"));
    const auto expectPitch = [&](double hz, std::int32_t note) {
        const auto output = product->Play(harmonicTone(231.0, kRate, 512 * 160));
        EXPECT_NEAR(measurePitch(std::span(output).last(16384), kRate, hz), hz, 0.4);
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
    EXPECT_EQ(dynamic_cast<const ZPopupMenu&>(Find("ScaleMenu")).GetText().ToNarrow(), "\"  Major");
    expectPitch(233.082, kASharp);
}

TEST_F(EditorUseTest, TheWindowReceivesEachNewRateOnce)
{
    struct Recorder : ZWindowFilter
    {
        void FilterMessage(const ZMessage& /*message*/) override { ++rates; }
        int rates = 0;
    } recorder;
    const ZInterfaceLock lock;
    window->AddFilter(ZSAMPLERATECHANGED, &recorder);
    for (int i = 0; i < 2; ++i)
        product->Ask(effSetSampleRate, 0, 0, nullptr, 96000.0f);
    EXPECT_EQ(recorder.rates, 1);
    window->RemoveFilter(ZSAMPLERATECHANGED, &recorder);
}

TEST_F(EditorUseTest, TextAndEditingKeysReachTheWindowAndTheOthersStayWithTheHost)
{
    struct Recorder : ZWindowFilter
    {
        void FilterMessage(const ZMessage& message) override
        {
            ZString text;
            std::uint8_t key = 0;
            bool shift = false;
            EXPECT_TRUE(message.Find("Text", text) ||
                        (message.Find("Key", key) && message.Find("shift", shift)));
            told = key == 0 ? "text " + text.ToNarrow() : std::to_string(key);
            told += shift ? " shift" : "";
        }
        std::string told;
    } recorder;
    const std::tuple<int, int, const char*> rows[] = {
        {1, 'x', "8"},      {9, 'x', "35"},      {10, 'x', "36"},      {11, 'x', "37"},
        {12, 'x', "38"},    {13, 'x', "39"},     {14, 'x', "40"},      {22, 'x', "46"},
        {55, 'x', "17"},    {54, 0, "16 shift"}, {24, 0, "text 0"},    {29, 'x', "text 5"},
        {33, 0, "text 9"},  {19, 0, "text \3"},  {4, 0, "text \r"},    {38, 0, "text ."},
        {0, 'a', "text a"}, {0, 0xe9, "text é"}, {0, 0x141, "text A"}, {23, 0, ""},
        {34, 0, ""},        {7, 0, ""},          {0, ' ', ""},         {0, 0x100, ""},
        {255, 0, ""},       {2, 'x', "9"}};  // last, since it gives the keys that follow to a
                                             // control
    const ZInterfaceLock lock;
    for (const std::int32_t id : {ZKEYDOWN, ZTEXTINPUT})
        window->AddFilter(id, &recorder);
    for (const auto& [virt, character, told] : rows) {
        recorder.told.clear();
        EXPECT_EQ(product->Ask(effEditKeyDown, character, virt), *told != '\0') << virt;
        EXPECT_EQ(recorder.told, told) << virt;
    }
    for (const std::int32_t id : {ZKEYDOWN, ZTEXTINPUT})
        window->RemoveFilter(id, &recorder);
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
}

TEST_F(EditorUseTest, AFailureWhileTheWindowIsShownIsReportedAndTheWindowOpensLater)
{
    struct Faulty : ZView
    {
        using ZView::ZView;
        void OnAttached() override { failure(); }
        std::function<void()> failure = [] {};
    };
    if (!VirtualDisplay::IsAvailable())
        GTEST_SKIP() << "no X server for tests";
    const VirtualDisplay display;
    DisplayProbe probe;
    const xcb_window_t parent = probe.MakeWindow({0, 0, 454, 430});
    const auto open = [&] {
        return product->Ask(effEditOpen, 0, 0, reinterpret_cast<void*>(std::uintptr_t{parent}));
    };
    const BoxRecorder recorder;
    const std::function<void()> failures[] = {[] { throw ZException("torn"); },
                                              [] { throw std::bad_alloc(); }};
    for (const auto& failure : failures) {
        window.reset();
        product = std::make_unique<ProductInstance>(TestHost::callback);
        const auto faulty = boost::make_shared<Faulty>("faulty", nullptr);
        {
            const ZInterfaceLock lock;
            window = product->app->GetMainWindow();
            window->GetRootView()->AddSubview(faulty, false);
        }
        faulty->failure = failure;
        EXPECT_EQ(open(), 0);
        faulty->failure = [] {};
        EXPECT_EQ(open(), 1);
        product->Ask(effEditClose);
    }
    EXPECT_EQ(recorder.boxes.size(), 2u);
}

TEST_F(EditorUseTest, ClosingThePluginWaitsForTheNotificationOfAGesture)
{
    const ZPoint at = At("PitchCorrectionTimeSlider", {5, 5});
    ZWindow* const kept = window.get();
    window.reset();
    std::thread closer;
    TestHost::On(audioMasterBeginEdit, [&](AEffect*) {
        closer = std::thread([&] { product.reset(); });
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    });
    {
        const ZInterfaceLock lock;
        kept->NativeMouse({ZNativeMouseEvent::kDown, at, ZView::kMouseButton, 0});
    }
    closer.join();
    const Notes notes = TestHost::TakeNotes();
    EXPECT_EQ(std::ranges::count(notes, "begin 4"), 1);
    EXPECT_EQ(notes.back(), "end 4");
}

}  // namespace

}  // namespace orvane
