// The shipped window in the hands of a user: what the mouse does in it, as the host, the document
// and the engine come to know of it. Without a display; it ticks when a test says so.

#include "pluginwrappers/EditorBench.h"
#include "support/BoxRecorder.h"
#include "support/Measure.h"
#include "support/Signals.h"

#include "kestrune/common/KestruneNameScaleDialog.h"
#include "zlib/common/ZBuffer.h"
#include "zlib/common/ZWindowKeeper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

constexpr float kRate = 44100.0f;

// The parameters' indices.
constexpr std::int32_t kKey = 2;
constexpr std::int32_t kSourceType = 3;
constexpr std::int32_t kCorrectionTime = 4;
constexpr std::int32_t kPitchTranspose = 5;
constexpr std::int32_t kFormantTranspose = 6;

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
    const float before = Element("pitchCorrectionTime").GetZFloat();
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
    const float host = product->effect->getParameter(product->effect, kCorrectionTime);
    EXPECT_EQ(takeNotes(), (Notes{"4=" + std::to_string(std::lround(host * 1000.0f)), "end 4"}));
    EXPECT_GT(Element("pitchCorrectionTime").GetZFloat(), before);
    product->Tick();
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
    struct Menu
    {
        const char* view;
        const char* element;
        std::int32_t parameter;
    };
    for (const Menu& menu : {Menu{"TypeMenu", "sourceType", kSourceType},
                             Menu{"TransposePitchPopup", "pitchTranspose", kPitchTranspose},
                             Menu{"TransposeFormantPopup", "formantTranspose", kFormantTranspose},
                             Menu{"KeyMenu", "key", kKey}})
    {
        SCOPED_TRACE(menu.view);
        ZElement& element = Element(menu.element);
        const std::int32_t count = element.CountDiscreteValues();
        ASSERT_GT(count, 1);
        for (std::int32_t i = count - 1; i >= 0; --i) {
            ChooseInMenu(menu.view, i);
            EXPECT_EQ(element.GetDiscrete(), i);
            ASSERT_EQ(shownMenu.size(), static_cast<std::size_t>(count));
            EXPECT_EQ(TextOf(menu.view), shownMenu[static_cast<std::size_t>(i)]);
            const auto value =
                std::lround(1000.0f * static_cast<float>(i) / static_cast<float>(count - 1));
            const std::string index = std::to_string(menu.parameter);
            EXPECT_EQ(takeNotes(), (Notes{"begin " + index, index + "=" + std::to_string(value),
                                          "end " + index}));
            product->Tick();
            EXPECT_EQ(takeNotes(), Notes{});
        }
    }
}

TEST_F(EditorUseTest, AScaleFromTheMenuShowsItsNotesAndIsNoParameter)
{
    const auto notes = [&] {
        std::string flags;
        const ZBuffer& buffer = *Element("notesInScale").GetZBuffer();
        for (std::uint32_t i = 0; i < buffer.Length(); ++i)
            flags += buffer.Data()[i] == 1.0f ? '1' : '0';
        return flags;
    };
    std::map<std::string, std::string> scales;
    for (std::int32_t i = 0; i < Element("scale").CountDiscreteValues(); ++i) {
        ChooseInMenu("ScaleMenu", i);
        product->Tick();
        scales[TextOf("ScaleMenu")] = notes();
    }
    EXPECT_EQ(scales["Major"], "101011010101");
    EXPECT_EQ(scales["Chromatic"], "111111111111");
    EXPECT_GT(scales.size(), 3u);
    EXPECT_EQ(takeNotes(), Notes{});
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

TEST_F(EditorUseTest, EachPressOfAQuickHandCounts)
{
    const ZPoint box = At("Transpose Enable", {5, 5});
    const ZPoint slider = At("PitchCorrectionTimeSlider", {90, 8});
    Click("Transpose Enable");
    Mouse(ZNativeMouseEvent::kDoubleClick, box);
    Mouse(ZNativeMouseEvent::kUp, box);
    EXPECT_EQ(Element("transposeOnOff").GetDiscrete(), 0);
    Mouse(ZNativeMouseEvent::kDoubleClick, slider);
    Mouse(ZNativeMouseEvent::kMove, {slider.x + 100, slider.y});
    EXPECT_EQ(Element("pitchCorrectionTime").GetZFloat(), Element("pitchCorrectionTime").Max());
    Mouse(ZNativeMouseEvent::kUp, slider);
}

TEST_F(EditorUseTest, WhatTheMenusChooseIsHeard)
{
    Click("Transpose Enable");
    const auto octaveUp = [&] {
        choose = [&]() -> std::optional<std::int32_t> {
            for (std::size_t i = 0; i < shownMenu.size(); ++i)
                if (shownMenu[i].find("ctave") != std::string::npos)
                    return static_cast<std::int32_t>(i);
            return std::nullopt;
        };
    };
    octaveUp();
    Click("TransposePitchPopup");
    const std::string chosen = TextOf("TransposePitchPopup");
    SCOPED_TRACE(chosen);
    product->Tick();
    product->Ask(effSetSampleRate, 0, 0, nullptr, kRate);
    product->Ask(effSetBlockSize, 0, 512);
    product->Ask(effMainsChanged, 0, 1);
    auto input = harmonicTone(220.0, kRate, 512 * 200);
    std::vector<float> output(input.size());
    std::vector<float> other(input.size());
    for (std::size_t at = 0; at < input.size(); at += 512) {
        float* in[] = {input.data() + at, input.data() + at};
        float* out[] = {output.data() + at, other.data() + at};
        product->effect->processReplacing(product->effect, in, out, 512);
    }
    const std::span<const float> end(output.data() + output.size() - 16384, 16384);
    const double wanted = chosen.find("own") != std::string::npos ? 110.0 : 440.0;
    EXPECT_NEAR(centsBetween(measurePitch(end, kRate, wanted), wanted), 0.0, 2.0);
}

TEST_F(EditorUseTest, AScaleThatIsNamedJoinsTheMenu)
{
    const BoxRecorder boxes;
    bool heldInDialog = true;
    const auto before =
        KestruneNameScaleDialog::SetRunner([&](ZApplication*, const ZString&, ZString& name) {
            heldInDialog = window->GetCapturedView() != nullptr;
            name = "Mine";
            return true;
        });
    // A key turns the scale into one that is not in the menu.
    ZBuffer& notes = *Element("notesInScale").GetZBuffer();
    notes.Data()[1] = 1.0f;
    Element("notesInScale").ElementChanged(nullptr, true);
    product->Tick();
    product->Tick();
    EXPECT_EQ(TextOf("ScaleMenu").substr(0, 3), "\"  ");
    Click("CustomScaleDoneButton");
    product->Tick();
    product->Tick();
    EXPECT_FALSE(heldInDialog) << "the mouse is free while the dialog is open";
    EXPECT_EQ(TextOf("ScaleMenu"), "Mine");
    choose = [] { return std::nullopt; };
    Click("ScaleMenu");
    EXPECT_EQ(shownMenu.back(), "Mine");
    KestruneNameScaleDialog::SetRunner(before);
}

TEST_F(EditorUseTest, WhateverEndsADragTheHostHearsItsEnd)
{
    const ZPoint at = At("PitchCorrectionTimeSlider", {50, 8});
    const auto endOf = [&](const std::function<void()>& finish) {
        Mouse(ZNativeMouseEvent::kDown, at);
        EXPECT_EQ(takeNotes().front(), "begin 4");
        finish();
        const Notes notes = takeNotes();
        return std::count(notes.begin(), notes.end(), "end 4");
    };
    EXPECT_EQ(endOf([&] { product->Ask(effEditClose); }), 1);
    EXPECT_EQ(endOf([&] {
                  const ZInterfaceLock lock;
                  window->Hide();
              }),
              1);
    EXPECT_EQ(endOf([&] {
                  window.reset();
                  product.reset();
              }),
              1);
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
