// What the editor shows on the screen is the state of its own instance, wherever a host puts it.

#include "TestHost.h"

#include "pluginwrappers/common/ERect.h"
#include "pluginwrappers/common/VstOpcodes.h"
#include "pluginwrappers/common/WindowPicture.h"
#include "support/DisplayProbe.h"
#include "support/VirtualDisplay.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::int32_t kCorrectPitch = 0;
constexpr std::int32_t kKey = 2;
// In the window: the box that switches the correction.
constexpr int kBoxX = 22;
constexpr int kBoxY = 163;

class EditorHostTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!VirtualDisplay::IsAvailable())
            GTEST_SKIP() << "there is no X server for tests";
        mDisplay = std::make_unique<VirtualDisplay>();
        probe = std::make_unique<DisplayProbe>();
        effect = host.Open();
        ASSERT_NE(effect, nullptr);
    }
    void TearDown() override
    {
        if (effect != nullptr)
            closeEffect(std::exchange(effect, nullptr));
        EXPECT_TRUE(!probe || NothingIsLeft());
    }

    [[nodiscard]] static ERect SizeOf(AEffect* of)
    {
        ERect* rect = nullptr;
        EXPECT_EQ(ask(of, effEditGetRect, 0, 0, static_cast<void*>(&rect)), 1);
        return rect != nullptr ? *rect : ERect{};
    }
    /// A parent as large as the editor, which begins at that place of the screen.
    [[nodiscard]] xcb_window_t ParentAt(std::int16_t x, std::int16_t y) const
    {
        const ERect size = SizeOf(effect);
        return probe->MakeWindow({x, y, static_cast<std::uint16_t>(size.right),
                                  static_cast<std::uint16_t>(size.bottom)});
    }
    static std::intptr_t Open(AEffect* of, std::uintptr_t parent)
    {
        return ask(of, effEditOpen, 0, 0, reinterpret_cast<void*>(parent));  // as hosts do
    }
    /// Whether the parent comes to hold so many windows.
    [[nodiscard]] bool Holds(xcb_window_t parent, std::size_t count) const
    {
        return waitFor([&] { return probe->GetChildren(parent).size() == count; });
    }
    /// Whether the screen comes to show there what the window of the effect shows.
    [[nodiscard]] bool Shows(AEffect* of, int x, int y) const
    {
        return waitFor([&] {
            // Asked each time, since a value may yet be on its way to its view.
            WindowPicture picture{};
            EXPECT_EQ(ask(of, effVendorSpecific, kVendorOrvane, kVendorWindowPicture, &picture), 1);
            for (int row = 4; row < picture.height; row += 23) {
                const int column = (row * 7) % picture.width;
                const std::uint32_t shown = probe->PixelAt(x + column, y + row);
                if (shown != (picture.pixels[row * picture.width + column] & 0xFFFFFF))
                    return false;
            }
            return true;
        });
    }
    /// Whether the display comes to hold nothing of the plug-in's any more.
    [[nodiscard]] bool NothingIsLeft() const
    {
        return waitFor([this] { return probe->CountClients() == 0; });
    }

    const TestHost host;
    AEffect* effect = nullptr;
    std::unique_ptr<DisplayProbe> probe;

private:
    std::unique_ptr<VirtualDisplay> mDisplay;
};

}  // namespace

TEST_F(EditorHostTest, ShowsTheSameStateInOneParentAfterAnother)
{
    const xcb_window_t first = ParentAt(0, 0);
    EXPECT_EQ(Open(effect, first), 1);
    EXPECT_TRUE(Shows(effect, 0, 0));
    probe->MovePointer(kBoxX, kBoxY);
    probe->Click(1);
    EXPECT_TRUE(waitFor([this] { return effect->getParameter(effect, kCorrectPitch) == 1.0f; }));
    EXPECT_TRUE(Shows(effect, 0, 0));
    ask(effect, effEditClose);
    EXPECT_TRUE(Holds(first, 0));
    EXPECT_TRUE(NothingIsLeft());

    const xcb_window_t second = ParentAt(200, 100);
    EXPECT_EQ(Open(effect, second), 1);
    EXPECT_TRUE(Holds(second, 1));
    EXPECT_TRUE(Shows(effect, 200, 100));
    ask(effect, effEditIdle);
    ask(effect, effEditClose);
    ask(effect, effEditClose);
    EXPECT_TRUE(Holds(second, 0));
}

TEST_F(EditorHostTest, ParentsThatAreNoneAreRefusedAndAllElseGoesOn)
{
    const xcb_window_t gone = ParentAt(0, 0);
    probe->Destroy(gone);
    probe->Sync();
    for (const std::uintptr_t parent :
         {std::uintptr_t{0}, std::uintptr_t{gone}, std::uintptr_t{0x7fffffff}, UINTPTR_MAX})
        EXPECT_EQ(Open(effect, parent), 0) << parent;
    ask(effect, effEditClose);
    EXPECT_TRUE(NothingIsLeft());
    EXPECT_EQ(SizeOf(effect).left, 0);

    const xcb_window_t parent = ParentAt(0, 0);
    EXPECT_EQ(Open(effect, parent), 1);
    EXPECT_EQ(Open(effect, 0), 0);
    EXPECT_TRUE(Shows(effect, 0, 0)) << "the first opening holds";
}

TEST_F(EditorHostTest, InstancesShowTheirOwnStatesAndGoInAnyOrder)
{
    std::array<AEffect*, 2> others{host.Open(), host.Open()};
    others[0]->setParameter(others[0], kCorrectPitch, 1.0f);
    others[1]->setParameter(others[1], kKey, 1.0f);
    for (AEffect* const other : others)
        ask(other, effMainsChanged, 0, 1);  // brings the values to the views
    EXPECT_EQ(Open(effect, ParentAt(0, 0)), 1);
    EXPECT_EQ(Open(others[0], ParentAt(460, 0)), 1);
    EXPECT_TRUE(Shows(effect, 0, 0));
    EXPECT_TRUE(Shows(others[0], 460, 0));
    EXPECT_EQ(Open(others[1], ParentAt(460, 330)), 1);
    closeEffect(std::exchange(effect, nullptr));
    EXPECT_TRUE(Shows(others[1], 460, 330));
    closeEffect(others[1]);
    closeEffect(others[0]);
}

}  // namespace orvane
