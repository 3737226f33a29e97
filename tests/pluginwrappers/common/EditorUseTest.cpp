// SPDX-License-Identifier: GPL-3.0-or-later
// What the host learns of the work in the shipped window, and what it may do meanwhile.

#include "pluginwrappers/common/WindowUse.h"
#include "support/DisplayProbe.h"
#include "support/VirtualDisplay.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/views/ZWindowFilter.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <new>

using namespace orvane;

namespace
{

using EditorUseTest = WindowUse;

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
    const std::tuple<const char*, const char*, std::string> rows[] = {
        {"TypeMenu", "sourceType", "3"},
        {"TransposePitchPopup", "pitchTranspose", "5"},
        {"TransposeFormantPopup", "formantTranspose", "6"},
        {"KeyMenu", "key", "2"}};
    for (const auto& [view, name, index] : rows) {
        SCOPED_TRACE(view);
        for (const std::int32_t i : {Element(name).CountDiscreteValues() - 1, 0}) {
            choice = i;
            Click(view);
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
    choice = 0;
    Click("ScaleMenu");
    EXPECT_EQ(TestHost::TakeNotes(), Notes{}) << "no parameter";
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
        [&] { locked([&] { window->Hide(); }); },
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
    const auto open = [&] { return openEditor(product->effect, parent); };
    const BoxRecorder recorder;
    const std::function<void()> failures[] = {[] { throw ZException("torn"); },
                                              [] { throw std::bad_alloc(); }};
    for (const auto& failure : failures) {
        window.reset();
        product = std::make_unique<ProductInstance>(TestHost::callback);
        const auto faulty = boost::make_shared<Faulty>("faulty", nullptr);
        locked([&] {
            window = product->app->GetMainWindow();
            window->GetRootView()->AddSubview(faulty, false);
        });
        faulty->failure = failure;
        EXPECT_EQ(open(), 0);
        faulty->failure = [] {};
        EXPECT_EQ(open(), 1);
        product->Ask(effEditClose);
    }
    EXPECT_EQ(recorder.boxes.size(), 2u);
}

}  // namespace
