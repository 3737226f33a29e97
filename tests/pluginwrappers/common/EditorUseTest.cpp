// SPDX-License-Identifier: GPL-3.0-or-later
// The shipped window in the hands of a user: what the mouse does in it, as the host, the document
// and the engine come to know of it. Without a display; it ticks when a test says so.

#include "pluginwrappers/common/EditorBench.h"
#include "pluginwrappers/interface/VstKeyCode.h"
#include "pluginwrappers/interface/WindowPicture.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <sstream>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

/// What the host was told of parameters, in words; and what it does meanwhile.
struct HostNotes
{
    std::vector<std::string> notes;
    std::function<void()> onBegin;
};

HostNotes& hostNotes()
{
    static HostNotes host;
    return host;
}

std::intptr_t noteTaking(AEffect* /*effect*/, std::int32_t opcode, std::int32_t index,
                         std::intptr_t /*value*/, void* /*ptr*/, float opt)
{
    std::ostringstream note;
    if (opcode == audioMasterAutomate)
        note << index << "=" << std::lround(opt * 1000.0f);
    else if (opcode == audioMasterBeginEdit)
        note << "begin " << index;
    else if (opcode == audioMasterEndEdit)
        note << "end " << index;
    if (!note.str().empty())
        hostNotes().notes.push_back(note.str());
    if (opcode == audioMasterBeginEdit && hostNotes().onBegin)
        hostNotes().onBegin();
    return opcode == audioMasterVersion ? 2400 : 0;
}

using Notes = std::vector<std::string>;

Notes takeNotes()
{
    return std::exchange(hostNotes().notes, {});
}

class EditorUseTest : public EditorBench
{
protected:
    EditorUseTest()
        : EditorBench(noteTaking)
    {
        hostNotes() = {};
    }
    ~EditorUseTest() override { hostNotes() = {}; }
};

TEST_F(EditorUseTest, ADragOfTheSliderIsOneGestureThatEndsWithTheLastValue)
{
    const ZPoint thumb = At("PitchCorrectionTimeSlider", {0, 8});
    Mouse(ZNativeMouseEvent::kMove, thumb);
    Mouse(ZNativeMouseEvent::kDown, thumb);
    EXPECT_EQ(takeNotes(), (Notes{"begin 4"}));
    product->Tick();
    takeNotes();

    // The pointer leaves the window, and comes back.
    Mouse(ZNativeMouseEvent::kMove, {thumb.x + 40, thumb.y});
    Mouse(ZNativeMouseEvent::kMove, {5000, -300});
    product->Tick();
    EXPECT_EQ(takeNotes(), (Notes{"4=1000"})) << "once a tick, and the newest";
    EXPECT_EQ(Element("pitchCorrectionTime").GetZFloat(), Element("pitchCorrectionTime").Max());
    Mouse(ZNativeMouseEvent::kUp, {thumb.x + 40, thumb.y});
    EXPECT_EQ(takeNotes(), (Notes{"4=300", "end 4"})) << "held by the middle of 33 pixels";
    Mouse(ZNativeMouseEvent::kMove, {thumb.x + 60, thumb.y});
    product->Tick();
    EXPECT_EQ(takeNotes(), Notes{}) << "what is let go moves no more";
}

TEST_F(EditorUseTest, WheelAndAltAreGesturesOfTheirOwn)
{
    ZElement& time = Element("pitchCorrectionTime");
    const ZPoint at = At("PitchCorrectionTimeSlider", {50, 8});
    time.SetZFloat(time.Min(), true);
    Mouse(ZNativeMouseEvent::kWheel, at, 0, 2);
    EXPECT_FLOAT_EQ(time.GetZFloat(), time.Min() + time.Range() * 0.02f);
    EXPECT_EQ(takeNotes(), (Notes{"begin 4", "4=20", "end 4"}));

    Mouse(ZNativeMouseEvent::kDown, at, ZView::kMouseButton | ZView::kMouseAlt);
    EXPECT_EQ(takeNotes(), Notes{});
    Mouse(ZNativeMouseEvent::kUp, at, ZView::kMouseButton | ZView::kMouseAlt);
    EXPECT_EQ(time.GetZFloat(), time.GetZFloatDefault());
    const Notes notes = takeNotes();
    ASSERT_EQ(notes.size(), 3u);
    EXPECT_EQ(notes.front(), "begin 4");
    EXPECT_EQ(notes.back(), "end 4");

    // While the thumb is held, the wheel and a release with alt belong to the drag.
    Mouse(ZNativeMouseEvent::kDown, at);
    Mouse(ZNativeMouseEvent::kWheel, at, ZView::kMouseButton, -1);
    Mouse(ZNativeMouseEvent::kUp, at, ZView::kMouseButton | ZView::kMouseAlt);
    const Notes drag = takeNotes();
    EXPECT_EQ(std::count(drag.begin(), drag.end(), "begin 4"), 1);
    EXPECT_EQ(std::count(drag.begin(), drag.end(), "end 4"), 1);
    EXPECT_EQ(drag.back(), "end 4");
}

TEST_F(EditorUseTest, EachMenuShowsItsChoicesAndTellsTheHostOfTheOneThatIsMade)
{
    const std::tuple<const char*, const char*, const char*> menus[] = {
        {"TypeMenu", "sourceType", "3"},
        {"TransposePitchPopup", "pitchTranspose", "5"},
        {"TransposeFormantPopup", "formantTranspose", "6"},
        {"KeyMenu", "key", "2"}};
    for (const auto& [view, name, parameter] : menus) {
        SCOPED_TRACE(view);
        ZElement& element = Element(name);
        const std::int32_t last = element.CountDiscreteValues() - 1;
        ASSERT_GT(last, 0);
        for (const std::int32_t i : {last, 0}) {
            ChooseInMenu(view, i);
            EXPECT_EQ(element.GetDiscrete(), i);
            ASSERT_EQ(shownMenu.size(), static_cast<std::size_t>(last + 1));
            EXPECT_EQ(TextOf(view), shownMenu[static_cast<std::size_t>(i)]);
            const std::string index = parameter;
            EXPECT_EQ(takeNotes(),
                      (Notes{"begin " + index, index + (i == 0 ? "=0" : "=1000"), "end " + index}));
            product->Tick();
            EXPECT_EQ(takeNotes(), Notes{});
        }
    }
    ChooseInMenu("ScaleMenu", 0);
    EXPECT_EQ(takeNotes(), Notes{}) << "no parameter";
}

TEST_F(EditorUseTest, TheSwitchesSwitchAndTellTheHost)
{
    Click("Transpose Enable");
    EXPECT_EQ(takeNotes(), (Notes{"begin 1", "1=1000", "end 1"}));
    EXPECT_EQ(Element("transposeOnOff").GetDiscrete(), 1);
    Click("Transpose Enable");
    Click("Pitch Correction Enable");
    EXPECT_EQ(takeNotes(), (Notes{"begin 1", "1=0", "end 1", "begin 0", "0=1000", "end 0"}));
    Click("AcceptsMIDIButton");
    EXPECT_EQ(Element("AcceptMIDI").GetDiscrete(), 1);
    Click("AcceptsMIDIButton");
    EXPECT_EQ(Element("AcceptMIDI").GetDiscrete(), 0);
    EXPECT_EQ(takeNotes(), Notes{}) << "no parameter";
}

TEST_F(EditorUseTest, TheWindowHearsOfKeysAndRatesAndLendsItsPicture)
{
    struct Ear : ZWindowFilter
    {
        void FilterMessage(const ZMessage& message) override { heard.push_back(message.GetId()); }
        std::vector<std::int32_t> heard;
    } ear;
    for (const std::int32_t id : {ZSAMPLERATECHANGED, ZTEXTINPUT})
        window->AddFilter(id, &ear);
    product->Ask(effSetSampleRate, 0, 0, nullptr, 96000.0f);
    product->Ask(effSetSampleRate, 0, 0, nullptr, 96000.0f);  // no news
    EXPECT_EQ(product->Ask(effEditKeyDown, 'q'), 1);
    EXPECT_EQ(product->Ask(effEditKeyDown, 0, VKEY_SPACE), 0);
    EXPECT_EQ(ear.heard, (std::vector<std::int32_t>{ZSAMPLERATECHANGED, ZTEXTINPUT}));
    for (const std::int32_t id : ear.heard)
        window->RemoveFilter(id, &ear);

    WindowPicture picture{};
    EXPECT_EQ(product->Ask(effVendorSpecific, kVendorOrvane, 0, &picture), 0);
    EXPECT_EQ(product->Ask(effVendorSpecific, 0, kVendorWindowPicture, &picture), 0);
    EXPECT_EQ(product->Ask(effVendorSpecific, kVendorOrvane, kVendorWindowPicture, nullptr), 0);
    EXPECT_EQ(picture.pixels, nullptr);
    EXPECT_EQ(product->Ask(effVendorSpecific, kVendorOrvane, kVendorWindowPicture, &picture), 1);
    EXPECT_EQ(picture.width * picture.height, 454 * 430);
}

TEST_F(EditorUseTest, DoubleClickSwitchesABoxTwiceAndRestoresASlider)
{
    const ZPoint box = At("Transpose Enable", {5, 5});
    const ZPoint slider = At("PitchCorrectionTimeSlider", {90, 8});
    ZElement& time = Element("pitchCorrectionTime");
    Click("Transpose Enable");
    Mouse(ZNativeMouseEvent::kDoubleClick, box);
    Mouse(ZNativeMouseEvent::kUp, box);
    EXPECT_EQ(Element("transposeOnOff").GetDiscrete(), 0);
    time.SetZFloat(time.Max(), true);
    takeNotes();
    Mouse(ZNativeMouseEvent::kDoubleClick, slider);
    Mouse(ZNativeMouseEvent::kMove, {slider.x + 10, slider.y});
    Mouse(ZNativeMouseEvent::kUp, slider);
    EXPECT_EQ(time.GetZFloat(), time.GetZFloatDefault());
    const Notes notes = takeNotes();
    ASSERT_EQ(notes.size(), 3u);
    EXPECT_EQ(notes.front(), "begin 4");
    EXPECT_EQ(notes.back(), "end 4");
}

TEST_F(EditorUseTest, WhateverEndsADragTheHostHearsItsEnd)
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
        EXPECT_EQ(takeNotes().front(), "begin 4");
        end();
        const Notes notes = takeNotes();
        EXPECT_EQ(std::count(notes.begin(), notes.end(), "end 4"), 1);
    }
}

TEST_F(EditorUseTest, APluginMayCloseWhileItsMenuIsOpen)
{
    const ZPoint at = At("KeyMenu", {5, 5});
    ZWindow* const kept = window.get();
    window.reset();
    choose = [&] {
        product.reset();
        return 3;
    };
    const ZInterfaceLock lock;
    kept->NativeMouse({ZNativeMouseEvent::kDown, at, ZView::kMouseButton, 0});
    EXPECT_EQ(product, nullptr);
}

TEST_F(EditorUseTest, AHostMayCloseTheWindowFromInsideAGesture)
{
    const ZPoint at = At("PitchCorrectionTimeSlider", {50, 8});
    hostNotes().onBegin = [&] { product->Ask(effEditClose); };
    Mouse(ZNativeMouseEvent::kDown, at);
    EXPECT_EQ(takeNotes(), (Notes{"begin 4", "end 4"}));
    EXPECT_EQ(window->GetCapturedView(), nullptr);
    Mouse(ZNativeMouseEvent::kMove, {at.x + 20, at.y});
    Mouse(ZNativeMouseEvent::kUp, at);
    const Notes rest = takeNotes();
    EXPECT_EQ(std::count(rest.begin(), rest.end(), "end 4"), 0);
}

TEST_F(EditorUseTest, APluginThatIsClosedWaitsForTheGestureThatTheHostIsToldOf)
{
    using namespace std::chrono_literals;
    for (const char* view : {"PitchCorrectionTimeSlider", "Transpose Enable"}) {
        SCOPED_TRACE(view);
        hostNotes() = {};
        window.reset();
        product = std::make_unique<ProductInstance>(noteTaking);
        window = MainWindow();
        const ZPoint at = At(view, {5, 5});
        ZWindow* const kept = window.get();
        window.reset();
        std::thread closer;
        hostNotes().onBegin = [&] {
            closer = std::thread([&] { product.reset(); });
            std::this_thread::sleep_for(10ms);  // it may come as far as it can
        };
        {
            const ZInterfaceLock lock;
            kept->NativeMouse({ZNativeMouseEvent::kDown, at, ZView::kMouseButton, 0});
        }
        closer.join();
        const Notes notes = takeNotes();
        EXPECT_EQ(std::count(notes.begin(), notes.end(), notes.front()), 1);
        EXPECT_EQ(notes.front().substr(0, 5), "begin");
        EXPECT_EQ(notes.back().substr(0, 3), "end");
    }
}

}  // namespace

}  // namespace orvane
