// SPDX-License-Identifier: GPL-3.0-or-later
// The window of the CLAP form in a plain X11 host, on a virtual display.

#include "ClapTestHost.h"
#include "support/VirtualDisplayTest.h"

using namespace orvane;

namespace
{

constexpr xcb_rectangle_t kPlace{10, 10, 908, 860};
// Width and height as the host notes them.
constexpr std::uint64_t kAt1 = 454 << 16 | 430;
constexpr std::uint64_t kAt1And5 = 681 << 16 | 645;
constexpr std::uint64_t kAt2 = 908 << 16 | 860;

using Notes = std::vector<std::string>;

struct ClapWindowTest : VirtualDisplayTest
{
    void Begin() override { clap = std::make_unique<ClapInstance>(library); }
    void Open(double scale)
    {
        ASSERT_TRUE(clap->gui->create(clap->plugin, kClapWindowX11, false));
        ASSERT_TRUE(clap->gui->set_scale(clap->plugin, scale));
        clap_window window{kClapWindowX11, {probe->MakeWindow(kPlace)}};
        ASSERT_TRUE(clap->gui->set_parent(clap->plugin, &window));
        ASSERT_TRUE(clap->gui->show(clap->plugin));
        mScale = scale;
        ASSERT_TRUE(IsSeen());
    }
    [[nodiscard]] std::uint64_t Size() const
    {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        EXPECT_TRUE(clap->gui->get_size(clap->plugin, &width, &height));
        EXPECT_TRUE(clap->gui->set_size(clap->plugin, width, height));
        EXPECT_FALSE(clap->gui->set_size(clap->plugin, width + 1, height));
        return std::uint64_t{width} << 16 | height;
    }
    /// Returns whether the red head of the window comes to be seen.
    [[nodiscard]] bool IsSeen() const
    {
        return eventually([&] { return probe->PixelAt(At(300), At(45)) >> 16 > 100; });
    }
    /// Returns the place on the screen of a coordinate of the window.
    [[nodiscard]] int At(int unit) const { return 10 + static_cast<int>(unit * mScale); }
    void MoveTo(int x, int y) const { probe->MovePointer(At(x), At(y)); }
    /// Returns whether the host comes to be told this and nothing else, by flushes.
    [[nodiscard]] bool IsTold(const Notes& expected) const
    {
        Notes notes;
        static_cast<void>(eventually([&] {
            clap->Flush();
            std::ranges::move(clap->events.TakeNotes(), std::back_inserter(notes));
            return notes.size() >= expected.size();
        }));
        EXPECT_EQ(notes, expected);
        return notes == expected;
    }

    ClapLibrary library;
    std::unique_ptr<ClapInstance> clap;

    double mScale = 1.0;
};

TEST_F(ClapWindowTest, EditsAreGesturesOfTheirParameterAtEveryScale)
{
    for (const double scale : {1.0, 2.0}) {
        SCOPED_TRACE(scale);
        Open(scale);
        EXPECT_EQ(Size(), scale == 1.0 ? kAt1 : kAt2);
        MoveTo(22, 163);
        probe->Click(1);
        EXPECT_TRUE(IsTold({"begin 0", scale == 1.0 ? "0=1000" : "0=0", "end 0"}));
        EXPECT_GT(clap->host.flushRequests, 0);
        clap->events.Value(0, 1.0 - clap->Value(0));
        clap->Flush();
        EXPECT_TRUE(IsTold({})) << "the host knows what it has set";
        clap->events.Value(0, 1.0 - clap->Value(0));
        clap->Flush();
        clap->gui->destroy(clap->plugin);
    }
}

TEST_F(ClapWindowTest, EditsThatTheHostHasNoRoomForWaitAndClosingEndsAGesture)
{
    Open(1.0);
    clap->events.room = 1;
    MoveTo(22, 163);
    probe->Click(1);
    EXPECT_TRUE(IsTold({"begin 0"}));
    clap->events.room = 1000;
    EXPECT_TRUE(IsTold({"0=1000", "end 0"}));
    MoveTo(42, 202);
    probe->Press(1);
    // The press sets a value, too, the one that the slider has.
    EXPECT_TRUE(IsTold({"begin 4", "4=50000"}));
    EXPECT_TRUE(clap->gui->hide(clap->plugin));
    probe->Release(1);
    EXPECT_TRUE(IsTold({"end 4"}));
    EXPECT_TRUE(clap->gui->show(clap->plugin));
    EXPECT_TRUE(IsSeen());
}

TEST_F(ClapWindowTest, EditsOfWhatIsNoParameterAreToldOnTheMainThread)
{
    Open(1.0);
    EXPECT_TRUE(eventually([&] {
        MoveTo(110, 243);  // IGNORE of the tonic
        probe->Click(1);
        if (clap->host.callbackRequests == 0)
            return false;
        clap->plugin->on_main_thread(clap->plugin);
        return clap->host.dirty > 0;
    }));
    EXPECT_TRUE(IsTold({}));
}

TEST_F(ClapWindowTest, ItAsksForRoomWhenTheHostChangesTheScaleAndAcceptsARefusal)
{
    Open(1.0);
    ASSERT_TRUE(clap->gui->set_scale(clap->plugin, 1.5));
    EXPECT_EQ(clap->host.requestedSize, kAt1And5);
    EXPECT_EQ(Size(), kAt1And5);
    clap->host.grantsSize = false;
    ASSERT_TRUE(clap->gui->set_scale(clap->plugin, 2.0));
    EXPECT_EQ(Size(), kAt1And5);
    EXPECT_FALSE(clap->gui->set_scale(clap->plugin, -1.0));
    EXPECT_FALSE(clap->gui->create(clap->plugin, kClapWindowX11, false)) << "twice";
    EXPECT_FALSE(clap->gui->can_resize(clap->plugin));
    const char* api = nullptr;
    bool isFloating = true;
    EXPECT_TRUE(clap->gui->get_preferred_api(clap->plugin, &api, &isFloating));
    EXPECT_TRUE(clap->gui->is_api_supported(clap->plugin, api, isFloating));
    clap->gui->destroy(clap->plugin);
    EXPECT_FALSE(clap->gui->create(clap->plugin, kClapWindowX11, true)) << "floating";
    EXPECT_FALSE(clap->gui->create(clap->plugin, "wayland", false));
    EXPECT_FALSE(clap->gui->show(clap->plugin));
    for (int i = 0; i < 10; ++i) {
        Open(1.0);
        clap->gui->destroy(clap->plugin);
    }
    EXPECT_TRUE(eventually([&] { return probe->CountClients() == 0; }));
}

}  // namespace
