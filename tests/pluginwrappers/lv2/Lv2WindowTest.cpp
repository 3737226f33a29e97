// SPDX-License-Identifier: GPL-3.0-or-later
// The window of the LV2 form in a plain X11 host, on a virtual display.

#include "Lv2Host.h"
#include "support/VirtualDisplayTest.h"

using namespace orvane;

namespace
{

constexpr xcb_rectangle_t kPlace{100, 100, 454, 430};
constexpr xcb_rectangle_t kOtherPlace{560, 100, 454, 430};

using Notes = std::vector<std::string>;

struct Lv2WindowTest : VirtualDisplayTest
{
    void Begin() override
    {
        instance.Activate();
        instance.Run(0);
    }
    [[nodiscard]] std::unique_ptr<Lv2WindowHost> Open(const xcb_rectangle_t& place = kPlace)
    {
        auto host = std::make_unique<Lv2WindowHost>(bundle, instance, probe->MakeWindow(place));
        EXPECT_NE(host->ui, nullptr);
        EXPECT_TRUE(IsSeenAt(place));
        return host;
    }
    /// Returns whether the red and black window comes to be seen at the place.
    [[nodiscard]] bool IsSeenAt(const xcb_rectangle_t& place) const
    {
        return eventually([&] { return probe->PixelAt(place.x + 300, place.y + 45) >> 16 > 100; });
    }
    void ClickAt(int x, int y) const
    {
        probe->MovePointer(kPlace.x + x, kPlace.y + y);
        probe->Click(1);
    }
    void RunBlocks(int count)
    {
        std::array<float, 512> left{};
        std::array<float, 512> right{};
        for (int i = 0; i < count; ++i)
            instance.Run(left.data(), right.data(), 512);
    }
    /// Returns whether the host comes to be told this and nothing else.
    [[nodiscard]] static bool IsTold(Lv2WindowHost& host, const Notes& expected)
    {
        const bool came = eventually([&] {
            EXPECT_TRUE(host.Idle());
            return host.notes.size() >= expected.size();
        });
        EXPECT_TRUE(host.Idle());
        return came && std::exchange(host.notes, {}) == expected;
    }
    [[nodiscard]] bool IsCorrecting() const
    {
        return instance.Text().find("\"pitchCorrectionOnOff\" class=\"ZElementClass\" "
                                    "type=\"ZDISCRETE\" int32value=\"1\"") != std::string::npos;
    }

    Lv2Bundle bundle;
    Lv2Instance instance{bundle};
};

TEST_F(Lv2WindowTest, AnEditIsAGestureOfItsPortAndOldValuesOfThePortDoNotUndoIt)
{
    const auto host = Open();
    EXPECT_EQ(host->size, (std::array<int, 2>{454, 430}));
    host->setsPorts = false;
    ClickAt(22, 163);
    EXPECT_TRUE(IsTold(*host, {"begin 8", "8=1000", "end 8"}));
    RunBlocks(20);
    EXPECT_TRUE(IsCorrecting()) << "the host may still answer";
    instance.Value("pitchCorrectionOnOff") = 1.0f;
    RunBlocks(1);
    EXPECT_TRUE(IsTold(*host, {}));
    RunBlocks(100);  // for longer than answers of the host may take
    EXPECT_TRUE(IsCorrecting());
    ClickAt(22, 163);
    EXPECT_TRUE(IsTold(*host, {"begin 8", "8=0", "end 8"}));
    RunBlocks(100);
    EXPECT_TRUE(IsCorrecting()) << "the host has kept its value, as automation does";
    EXPECT_TRUE(IsTold(*host, {}));
    host->setsPorts = true;
    ClickAt(22, 163);
    EXPECT_TRUE(IsTold(*host, {"begin 8", "8=0", "end 8"}));
    EXPECT_FALSE(IsCorrecting());
    RunBlocks(100);
    instance.Value("pitchCorrectionOnOff") = 1.0f;  // automation
    RunBlocks(1);
    EXPECT_TRUE(IsCorrecting());
    EXPECT_TRUE(IsTold(*host, {})) << "the host knows what it has set";
}

TEST_F(Lv2WindowTest, AnswersToEarlierValuesOfAGestureDoNotMoveItBack)
{
    const auto host = Open();
    probe->MovePointer(kPlace.x + 42, kPlace.y + 202);
    probe->Press(1);
    probe->MovePointer(kPlace.x + 60, kPlace.y + 202);
    const auto comes = [&](const auto& condition) {
        return eventually([&] { return host->Idle() && condition(); });
    };
    EXPECT_TRUE(comes([&] { return host->notes.size() >= 2; }));
    EXPECT_EQ(host->notes.front(), "begin 12");
    const float early = instance.Value("pitchCorrectionTime");
    host->setsPorts = false;
    probe->MovePointer(kPlace.x + 90, kPlace.y + 202);
    probe->Release(1);
    EXPECT_TRUE(comes([&] { return host->notes.back() == "end 12"; }));
    host->notes.clear();
    const std::string before = instance.Text();
    instance.Value("pitchCorrectionTime") = early - 1.0f;
    RunBlocks(1);
    EXPECT_EQ(instance.Text(), before) << "the late answer has moved the slider";
    RunBlocks(100);
    EXPECT_NE(instance.Text(), before) << "a value that stays is what the host wants";
    EXPECT_TRUE(IsTold(*host, {}));
}

TEST_F(Lv2WindowTest, ClosingInTheMiddleOfAGestureEndsItForTheHost)
{
    const auto host = Open();
    probe->MovePointer(kPlace.x + 42, kPlace.y + 202);
    probe->Press(1);
    EXPECT_TRUE(IsTold(*host, {"begin 12"}));
    host->Close();
    probe->Release(1);
    EXPECT_EQ(host->notes, (Notes{"end 12"}));
}

TEST_F(Lv2WindowTest, TheHostIsToldOfEditsThatNoPortCarries)
{
    const auto host = Open();
    // A load and the start are no edits, and what follows from them passes first.
    EXPECT_TRUE(eventually([&] {
        ClickAt(110, 243);  // IGNORE of the tonic
        RunBlocks(1);
        const auto* const sequence =
            reinterpret_cast<const LV2_Atom_Sequence*>(instance.notify.data());
        if (sequence->atom.size <= sizeof(LV2_Atom_Sequence_Body))
            return false;
        const auto* const event = reinterpret_cast<const LV2_Atom_Event*>(sequence + 1);
        const auto* const object = reinterpret_cast<const LV2_Atom_Object*>(&event->body);
        EXPECT_EQ(event->body.type, bundle.urids(LV2_ATOM__Object));
        EXPECT_EQ(object->body.otype, bundle.urids(LV2_STATE__StateChanged));
        return true;
    }));
    EXPECT_TRUE(IsTold(*host, {}));
}

TEST_F(Lv2WindowTest, ItReopensElsewhereAndASecondWindowTakesItFromTheFirst)
{
    for (int i = 0; i < 10; ++i)
        EXPECT_NE(Open()->widget, nullptr);
    auto first = Open();
    auto second = Open(kOtherPlace);
    EXPECT_FALSE(first->Idle());
    EXPECT_TRUE(second->Idle());
    first.reset();
    EXPECT_TRUE(second->Idle());
    EXPECT_TRUE(IsSeenAt(kOtherPlace));
    second.reset();
    EXPECT_TRUE(eventually([&] { return probe->CountClients() == 0; }));
    EXPECT_TRUE((first = Open())->Idle());
}

TEST_F(Lv2WindowTest, TheWindowHasTheScaleOfTheHostAndKeepsItWhenTheHostRefusesAnother)
{
    using Size = std::array<int, 2>;
    Lv2WindowHost host(bundle, instance, probe->MakeWindow({0, 0, 908, 768}), "",
                       /*scaleFactor*/ 2.0f);
    const auto hasSize = [&](const Size& size) {
        return eventually([&] {
            const auto place = probe->GetPlace(
                static_cast<xcb_window_t>(reinterpret_cast<std::uintptr_t>(host.widget)));
            return Size{place.width, place.height} == size;
        });
    };
    EXPECT_EQ(host.size, (Size{908, 860}));
    EXPECT_TRUE(hasSize({908, 860}));
    host.refusesSizes = true;
    host.SetScaleFactor(1.0f);
    EXPECT_EQ(host.size, (Size{454, 430})) << "the host is asked";
    EXPECT_TRUE(hasSize({908, 860}));
    host.refusesSizes = false;
    host.SetScaleFactor(1.5f);
    EXPECT_EQ(host.size, (Size{681, 645}));
    EXPECT_TRUE(hasSize({681, 645}));
    host.SetScaleFactor(-3.0f);
    EXPECT_TRUE(hasSize({681, 645})) << "no scale";
    ASSERT_TRUE(eventually([&] { return probe->PixelAt(450, 68) >> 16 > 100; }));
    probe->MovePointer(33, 244);  // the switch of the correction
    probe->Click(1);
    EXPECT_TRUE(IsTold(host, {"begin 8", "8=1000", "end 8"}));
}

TEST_F(Lv2WindowTest, AHostThatLacksAFeatureGetsNoWindowAndALineThatNamesIt)
{
    for (const char* const feature : {LV2_INSTANCE_ACCESS_URI, LV2_UI__parent}) {
        testing::internal::CaptureStderr();
        const Lv2WindowHost host(bundle, instance, probe->MakeWindow(kPlace), feature);
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_EQ(host.ui, nullptr);
        EXPECT_EQ(host.widget, nullptr);
        EXPECT_NE(said.find(feature), std::string::npos) << said;
    }
    for (const char* const feature : {LV2_UI__touch, LV2_UI__resize})
        EXPECT_NE(Lv2WindowHost(bundle, instance, probe->MakeWindow(kPlace), feature).ui, nullptr);
}

}  // namespace
