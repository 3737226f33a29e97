#include "support/ExpectZException.h"
#include "zlib/ViewCanvas.h"
#include "zlib/common/ZMenu.h"
#include "zlib/common/ZMetalPopupMenu.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

class ZPopupMenuTest : public ViewCanvasTest
{
protected:
    ZPopupMenuTest()
        : mBefore(ZMenu::SetPresenter([this](const ZMenu& shown, const ZPoint& at, ZWindow*) {
            position = at;
            items = Text(shown);
            return user();
        }))
    {
    }
    ~ZPopupMenuTest() override { ZMenu::SetPresenter(mBefore); }

    boost::shared_ptr<ZMetalPopupMenu> MakeMenu(const boost::shared_ptr<ZElement>& element)
    {
        auto menu = Make<ZMetalPopupMenu>(
            "", R"(<rect name="stringrect" left="6" top="4" width="98" height="13"></rect>)");
        menu->AttachToElement(element);
        return menu;
    }
    /// The items, those with a check mark with a star.
    static std::string Text(const ZMenu& menu)
    {
        std::string text;
        for (const ZMenu::Item& item : menu.GetItems())
            text += item.text.ToNarrow() + (item.checked ? "* " : " ");
        return text;
    }

    /// What the user does with the open menu.
    std::function<std::optional<std::int32_t>()> user = [] { return std::nullopt; };
    ZPoint position;
    std::string items;

private:
    ZMenu::Presenter mBefore;
};

TEST_F(ZPopupMenuTest, TheMenuHasTheElementsTextsWithTheCurrentOneChecked)
{
    const auto element = MakeDiscrete({"A", "B", "C"});
    element->SetDiscrete(2, true);
    const auto menu = MakeMenu(element);
    menu->MouseDown({90, 18}, ZView::kMouseButton);
    EXPECT_EQ(items, "A B C* ");
    EXPECT_EQ(position, (ZPoint{6, 4})) << "over the text, wherever the press was";
    EXPECT_EQ(element->GetDiscrete(), 2) << "nothing chosen";

    user = [] { return 1; };
    menu->MouseDown({90, 18}, ZView::kMouseButton);
    EXPECT_EQ(element->GetDiscrete(), 1);
    Tell(*element);
    user = [] { return std::nullopt; };
    menu->MouseDown({90, 18}, ZView::kMouseButton);
    EXPECT_EQ(items, "A B* C ");
    element->SetDiscrete(0, false);
    Tell(*element);
    menu->MouseDown({90, 18}, ZView::kMouseButton);
    EXPECT_EQ(items, "A* B C ") << "no mark is left behind by a change from elsewhere";
}

TEST_F(ZPopupMenuTest, AnUpdateFillsTheMenuAnewAndKeepsTheNumber)
{
    const auto element = MakeDiscrete({"A", "B"});
    const auto menu = MakeMenu(element);
    element->SetDiscrete(1, false);
    Tell(*element);
    EXPECT_EQ(menu->GetCheckedIndex(), 1);
    element->AddDiscreteValue("New");
    app.ProcessQueue();
    EXPECT_EQ(Text(menu->GetMenu()), "A B New ");
    EXPECT_EQ(menu->GetCheckedIndex(), 1);
    element->RemoveDiscreteValues(false);
    Tell(*element);
    EXPECT_EQ(Text(menu->GetMenu()), "");
    EXPECT_EQ(menu->GetText(), ZString(""));
}

TEST_F(ZPopupMenuTest, AViewThatGoesWhileItsMenuIsOpenLosesNoChoice)
{
    const auto element = MakeDiscrete({"A", "B"});
    auto menu = MakeMenu(element);
    ZMetalPopupMenu* const view = menu.get();
    user = [&] {
        menu.reset();
        return 1;
    };
    view->MouseDown({5, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetDiscrete(), 1);
    EXPECT_EQ(element->GetObserverCount(), 0);
}

TEST_F(ZPopupMenuTest, AChoiceThatIsNoLongerThereCountsForNothing)
{
    const auto element = MakeDiscrete({"A", "B"});
    const auto menu = MakeMenu(element);
    user = [&] {
        element->RemoveDiscreteValues(true);
        element->AddDiscreteValue("Other");
        return 1;
    };
    menu->MouseDown({5, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetDiscrete(), 0);
}

TEST_F(ZPopupMenuTest, WithoutAnElementItSaysSoAndOpensNothing)
{
    const auto menu = MakeMenu(nullptr);
    user = []() -> std::optional<std::int32_t> {
        ADD_FAILURE();
        return std::nullopt;
    };
    menu->MouseDown({5, 5}, ZView::kMouseButton);
    EXPECT_EQ(menu->GetText(), ZString("Unknown"));
}

TEST_F(ZPopupMenuTest, OnlyAPopupCanBeOpened)
{
    std::int32_t index = 7;
    const ZMenu plain("File", ZMenu::Kind::kPlain);
    expectZException(-1, "Menu File is not a popup",
                     [&] { static_cast<void>(plain.Popup({}, nullptr, index)); });
    const ZMenu popup("Choices", ZMenu::Kind::kPopup);
    EXPECT_FALSE(popup.Popup({}, nullptr, index));
    EXPECT_EQ(index, 0);
    user = [] { return 3; };
    EXPECT_TRUE(popup.Popup({}, nullptr, index));
    EXPECT_EQ(index, 3);
}

TEST_F(ZPopupMenuTest, ThePictureIsAMetalButtonWithAnEnd)
{
    const auto element = MakeDiscrete({""});
    const auto menu = MakeMenu(element);
    Paint(*menu);
    EXPECT_EQ(canvas->At(50, 3), 0xfff6f6f6u) << "third shade of the body";
    EXPECT_EQ(canvas->At(50, 17), 0xfff4f4f4u);
    EXPECT_EQ(canvas->At(95, 3), 0xffcececeu) << "third shade of the end";
    EXPECT_EQ(canvas->AlphaAt(0, 0), 0u) << "round corners";
    EXPECT_EQ(canvas->At(100, 7), 0xff000000u) << "arrow up";
    EXPECT_EQ(canvas->At(100, 12), 0xff000000u) << "arrow down";
    EXPECT_LT(canvas->At(50, 0) & 0xffu, 0x90u) << "outline";
}

}  // namespace

}  // namespace orvane
