// SPDX-License-Identifier: GPL-3.0-or-later
// The keyboard in a window: the order of Tab, the ring, and what stays with the host.

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/views/WindowFixture.h"

using namespace orvane;

namespace
{

constexpr std::uint32_t kRingAmber = 0xffffcc66;
constexpr std::uint32_t kRingDark = 0xff000000;

struct ZWindowKeysTest : WindowFixture
{
    ZWindowKeysTest()
    {
        for (const char* const name : {"a", "b"})
            View(window, name).SetNavigable(true);
    }

    /// Types a key; returns whether the window has used it.
    bool Type(std::uint8_t code, bool shift = false) { return window.NativeKey({code, {}, shift}); }
    auto Focus() const { return window.GetFocusView() ? window.GetFocusView()->GetName() : "none"; }
    /// Returns a pixel of the window, with the scale's number of pixels on the side of a unit.
    [[nodiscard]] std::uint32_t PixelAt(std::int32_t x, std::int32_t y, int scale = 1)
    {
        const ZImage& image = *window.RenderOffscreen(ZDeviceScale(scale)).GetNative();
        return image.ReadPixels().at(static_cast<std::size_t>(y * image.GetWidth() + x));
    }

    ZWindow window{xmlOf(windowType()), mApp.get()};
};

}  // namespace

TEST_F(ZWindowKeysTest, TabBeginsAtEitherEndAndFollowsTheReadingOrder)
{
    // Added from the last to the first: two columns beside a high view, under a row of two.
    const auto add = [this](const char* name, const ZRect& bounds) {
        const auto view = boost::make_shared<TestView>(name, bounds, nullptr);
        view->SetNavigable(true);
        window.GetRootView()->AddSubview(view, true);
    };
    add("high", {40, 32, 90, 49});
    add("below", {2, 42, 20, 48});
    add("left", {2, 33, 20, 39});
    window.AttachViews();
    std::string order;
    for (int i = 0; i < 6; ++i) {
        EXPECT_TRUE(Type(kKeyTab));
        order += Focus() + " ";
    }
    EXPECT_EQ(order, "a b left below high a ");
    EXPECT_TRUE(Type(kKeyEscape));
    EXPECT_TRUE(Type(kKeyTab, true));
    EXPECT_EQ(Focus(), "high");
    View(window, "below").Hide();
    EXPECT_TRUE(Type(kKeyTab, true));
    EXPECT_EQ(Focus(), "left") << "what is hidden is passed over";
}

TEST_F(ZWindowKeysTest, TheRingIsThereFromTabToEscapeOrThePressOfAButton)
{
    const auto hasRing = [this] {
        const bool has = PixelAt(8, 20) == kRingAmber;
        EXPECT_EQ(PixelAt(6, 6) == kRingDark && PixelAt(7, 7) == kRingAmber &&
                      PixelAt(9, 9) == kRingDark && PixelAt(31, 31) == kRingAmber &&
                      PixelAt(33, 33) == kRingDark,
                  has);
        // At two pixels a unit: columns 12 and 13 are dark, 14 to 17 light.
        EXPECT_EQ(PixelAt(14, 40, 2) == kRingAmber && PixelAt(17, 40, 2) == kRingAmber &&
                      PixelAt(13, 40, 2) == kRingDark && PixelAt(18, 40, 2) == kRingDark,
                  has);
        return has;
    };
    window.Show();
    EXPECT_FALSE(hasRing());
    window.SetFocusView(&View(window, "a"));
    EXPECT_FALSE(hasRing()) << "no key was used";
    window.SetFocusView(nullptr);
    EXPECT_TRUE(Type(kKeyTab));
    EXPECT_TRUE(hasRing());
    // A view that is painted anew under the ring leaves it whole.
    View(window, "a").MarkDirtyWithin(window.GetRootView()->GetFrame());
    window.Paint({0, 0, 12, 50});
    EXPECT_TRUE(hasRing());
    EXPECT_TRUE(Type(kKeyTab));
    EXPECT_FALSE(hasRing()) << "it is around b now";
    Type(kKeyTab);
    View(window, "a").wantsKeys = false;
    EXPECT_TRUE(Type(kKeyEscape));
    EXPECT_FALSE(hasRing());
    EXPECT_FALSE(Type(kKeyEscape)) << "without a ring it is the host's";
    Type(kKeyTab);
    window.NativeMouse({ZNativeMouseEvent::kDown, {90, 45}, 1});
    EXPECT_FALSE(hasRing());
    EXPECT_EQ(Focus(), "none");
    Type(kKeyTab);
    window.GetRootView()->RemoveSubview(window.GetRootView()->FindSubview("a"));
    EXPECT_FALSE(hasRing());
}

TEST_F(ZWindowKeysTest, AKeyThatTheFocusViewDoesNotWantIsNotTaken)
{
    window.AttachViews();
    EXPECT_FALSE(Type(kKeySpace));
    EXPECT_FALSE(window.WantsKey({kKeySpace, {}}));
    EXPECT_TRUE(window.WantsKey({kKeyTab, {}}));
    Type(kKeyTab);
    EXPECT_TRUE(Type(kKeySpace) && window.WantsKey({kKeySpace, {}}));
    View(window, "a").wantsKeys = false;
    EXPECT_FALSE(Type(kKeySpace) || window.WantsKey({kKeySpace, {}}));
}

TEST_F(ZWindowKeysTest, AValueTipStandsInsideTheWindowAboveItsViewOrBelow)
{
    window.Show();
    ZValueTip& tip = window.GetValueTip();
    const TestView& a = View(window, "a");
    const TestView& b = View(window, "b");
    const ZRect area{0, 0, 100, 50};
    tip.Show(a, ZString("50 ms"), {0, 0, 20, 8});
    EXPECT_EQ(tip.GetRect().top, 10 + 8 + 5) << "there is no room above";
    EXPECT_EQ(tip.GetRect().Intersection(area), tip.GetRect());
    EXPECT_EQ(PixelAt(tip.GetRect().left + 3, tip.GetRect().top + 3), 0xff262629);
    tip.Show(b, ZString("51 ms"), {0, 35, 40, 40});
    EXPECT_EQ(tip.GetRect().bottom, 10 + 35 - 5);
    EXPECT_EQ(tip.GetRect().Intersection(area), tip.GetRect()) << "its view reaches out of it";
    tip.Hide(a);
    EXPECT_EQ(tip.GetText(), ZString("51 ms")) << "that of another view stays";
    window.GetRootView()->RemoveSubview(window.GetRootView()->FindSubview("b"));
    EXPECT_TRUE(tip.GetRect().IsEmpty());
}
