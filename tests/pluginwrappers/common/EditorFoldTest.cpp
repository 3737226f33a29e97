// SPDX-License-Identifier: GPL-3.0-or-later
// The pitch graph that the user unfolds below the shipped window, on a virtual display.

#include "kestrune/common/views/KestrunePitchGraph.h"
#include "pluginwrappers/common/ProductInstance.h"
#include "support/PrivateFolder.h"
#include "support/VirtualDisplayTest.h"
#include "zlib/common/views/ZWindow.h"

namespace orvane
{

namespace
{

using Size = std::pair<int, int>;

constexpr std::uint32_t kPlate = 0xB6B6B6;
constexpr std::uint32_t kInputColor = 0xFAC967;

class EditorFoldTest : public VirtualDisplayTest
{
protected:
    void Begin() override { product = std::make_unique<ProductInstance>(TestHost::callback); }

    [[nodiscard]] static Size SizeOf(const ProductInstance& of) { return editorSize(of.effect); }
    void Open(int width, int height)
    {
        const xcb_window_t parent = probe->MakeWindow(
            {0, 0, static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height)});
        EXPECT_EQ(openEditor(product->effect, parent), 1);
        child = probe->GetChildren(parent).front();
    }
    [[nodiscard]] ZWindow& Window() const { return *product->app->GetMainWindow(); }
    bool Unfold(bool isOpen) const
    {
        const ZInterfaceLock lock;
        return Window().Unfold(isOpen);
    }
    [[nodiscard]] bool Becomes(const Size& size)
    {
        return waitFor([&] {
            const xcb_rectangle_t place = probe->GetPlace(child);
            return Size(place.width, place.height) == size;
        });
    }

    const PrivateFolder folder;
    const EnvironmentVariable settings{"XDG_CONFIG_HOME", folder.Path().c_str()};
    const TestHost host;
    std::unique_ptr<ProductInstance> product;
    xcb_window_t child = XCB_NONE;
};

constexpr Size kFolded{454, 430};
constexpr Size kUnfolded{454, 614};

}  // namespace

TEST_F(EditorFoldTest, TheGraphUnfoldsWhenTheHostMakesRoomAndIsRemembered)
{
    EXPECT_EQ(SizeOf(*product), kFolded);
    Open(454, 614);
    TestHost::Answer(audioMasterSizeWindow, 1);
    EXPECT_TRUE(Unfold(true));
    EXPECT_EQ(TestHost::CountOf(audioMasterSizeWindow), 1);
    EXPECT_EQ(SizeOf(*product), kUnfolded);
    EXPECT_TRUE(Becomes(kUnfolded));
    EXPECT_TRUE(ShowsAt(10, 600, kPlate));
    product->Tick();  // brings the range to the graph
    // The voice is at the middle of the range, 73 to 1300 Hz, and scrolls in from the right.
    EXPECT_TRUE(waitFor([this] {
        product->Element("inputPitch").SetZFloat(686.5f, false);  // which silence takes back
        return probe->PixelAt(439, 430 + 2 + 8 + 75) == kInputColor;
    }));
    EXPECT_TRUE(Unfold(false));
    EXPECT_TRUE(Becomes(kFolded));
    {
        const ZInterfaceLock lock;
        EXPECT_EQ(Window().GetRootView()->FindSubview("PitchGraph"), nullptr);
    }
    EXPECT_TRUE(Unfold(true));
    product->Ask(effEditClose);
    EXPECT_EQ(SizeOf(*product), kUnfolded);
    const ProductInstance other(TestHost::callback);
    EXPECT_EQ(SizeOf(other), kUnfolded) << "kept in the user's settings";
}

TEST_F(EditorFoldTest, AHostThatRefusesKeepsItsWindowUntilTheNextOpening)
{
    Open(454, 430);
    EXPECT_FALSE(Unfold(true));
    EXPECT_EQ(SizeOf(*product), kFolded);
    EXPECT_TRUE(Becomes(kFolded));
    product->Ask(effEditClose);
    EXPECT_EQ(SizeOf(*product), kUnfolded);
    Open(454, 614);
    EXPECT_TRUE(Becomes(kUnfolded));
    EXPECT_TRUE(ShowsAt(10, 600, kPlate));
}

TEST_F(EditorFoldTest, AtTwoPixelsAUnitTheGraphTellsThePitchesAtThePointer)
{
    probe->SetResources("Xft.dpi:\t192\n");
    TestHost::Answer(audioMasterSizeWindow, 1);
    EXPECT_TRUE(Unfold(true)) << "the next window opens so";
    EXPECT_EQ(SizeOf(*product), Size(908, 1228));
    Open(908, 768);
    const auto tip = [this] {
        const ZInterfaceLock lock;
        return Window().GetValueTip().GetText().ToNarrow();
    };
    // The graph is below the lower edge of the display.
    const auto pointAt = [this](int x, int y) {
        const ZInterfaceLock lock;
        Window().NativeMouse({ZNativeMouseEvent::kMove, {2 * x, 2 * y}, 1, 0});
    };
    pointAt(60, 500);
    EXPECT_TRUE(waitFor([&] { return tip() == "in -, out -"; })) << "before there was a pitch";
    pointAt(440, 500);
    EXPECT_TRUE(waitFor([&] {
        product->Element("inputPitch").SetZFloat(218.5f, false);  // which silence takes back
        product->Element("outputPitch").SetZFloat(220.0f, false);
        return tip() == "in A3 -12 cents (218.5 Hz), out A3 0 cents (220 Hz)";
    })) << tip();
    const ZInterfaceLock lock;
    EXPECT_LE(Window().GetValueTip().GetRect().bottom, 440) << "the plot's upper edge";
}

}  // namespace orvane
