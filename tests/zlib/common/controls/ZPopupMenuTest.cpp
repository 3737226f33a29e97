// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/controls/ZMetalPopupMenu.h"
#include "zlib/common/views/ViewCanvas.h"

using namespace orvane;

namespace
{

struct ZPopupMenuTest : ViewCanvasTest
{
    ~ZPopupMenuTest() override { ZMenu::SetPresenter(mBefore); }

    boost::shared_ptr<ZMetalPopupMenu> MakeMenu(const boost::shared_ptr<ZElement>& element)
    {
        auto menu = Make<ZMetalPopupMenu>(
            "", R"(<rect name="stringrect" left="6" top="4" width="98" height="13"></rect>)");
        menu->AttachToElement(element);
        return menu;
    }
    /// Opens the menu, in which the user chooses an item or none. Returns the items that were
    /// shown, with a star behind each check mark.
    std::string Open(ZPopupMenu& menu, std::optional<std::int32_t> choice = std::nullopt)
    {
        user = [choice] { return choice; };
        menu.MouseDown({90, 18}, ZView::kMouseButton);
        return shown;
    }

    std::function<std::optional<std::int32_t>()> user;  // what the user does with the open menu
    ZPoint position;
    std::string shown;

    ZMenu::Presenter mBefore =
        ZMenu::SetPresenter([this](const ZMenu& menu, const ZPoint& at, ZWindow*) {
            position = at;
            shown.clear();
            for (const ZMenu::Item& item : menu.GetItems())
                shown += item.text.ToNarrow() + (item.checked ? "* " : " ");
            return user();
        });
};

TEST_F(ZPopupMenuTest, ListsTheElementsTextsWithTheCurrentOneCheckedAndOpensOnlyWithOne)
{
    const auto element = MakeDiscrete({"A", "B", "C"});
    element->SetDiscrete(2, true);
    const auto menu = MakeMenu(element);
    EXPECT_EQ(Open(*menu), "A B C* ");
    EXPECT_EQ(position, (ZPoint{6, 4})) << "over the text, wherever the press was";
    EXPECT_EQ(element->GetDiscrete(), 2) << "nothing was chosen";
    Open(*menu, 1);
    EXPECT_EQ(element->GetDiscrete(), 1);
    Tell(*element);
    EXPECT_EQ(Open(*menu), "A B* C ");
    element->SetDiscrete(0, false);
    Tell(*element);
    EXPECT_EQ(Open(*menu), "A* B C ") << "a change from elsewhere moves the check mark";

    element->AddDiscreteValue("New");
    app.ProcessQueue();
    EXPECT_EQ(Open(*menu), "A* B C New ");
    element->RemoveDiscreteValues(false);
    Tell(*element);
    EXPECT_EQ(Open(*menu), "");
    EXPECT_EQ(menu->GetText(), ZString(""));
    const auto lone = MakeMenu(nullptr);
    EXPECT_EQ(Open(*lone, 1), "");
    EXPECT_EQ(lone->GetText(), ZString("Unknown"));
    std::int32_t index = 7;
    const ZMenu popup("Choices", ZMenu::Kind::kPopup);
    user = [] { return std::nullopt; };
    EXPECT_FALSE(popup.Popup({}, nullptr, index));
    EXPECT_EQ(index, 0);
}

TEST_F(ZPopupMenuTest, ViewAndItemsMayBeGoneWhenTheMenuReturns)
{
    const auto element = MakeDiscrete({"A", "B"});
    auto menu = MakeMenu(element);
    ZMetalPopupMenu* const view = menu.get();
    user = [&] {
        menu.reset();
        return 1;
    };
    view->MouseDown({5, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetDiscrete(), 1) << "the choice counts without the view";
    EXPECT_EQ(element->GetObserverCount(), 0);

    menu = MakeMenu(element);
    user = [&] {
        element->RemoveDiscreteValues(true);
        element->AddDiscreteValue("Other");
        element->SetDiscrete(0, true);
        return 1;
    };
    menu->MouseDown({5, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetDiscrete(), 0) << "the chosen item no longer exists";
}

TEST_F(ZPopupMenuTest, LongTextEndsBeforeTheArrows)
{
    const auto paintedFrom = [this](const char* text, std::int32_t left) {
        Paint(*MakeMenu(MakeDiscrete({text})));
        canvas->SetAlphaBlend(false);
        canvas->FillRect(0, 0, left, 40);
        return canvas->Pixels();
    };
    EXPECT_EQ(paintedFrom("Down Augmented Augmented 4th", 93), paintedFrom("", 93));
    EXPECT_NE(paintedFrom("Down Augmented Augmented 4th", 60), paintedFrom("", 60));
}

}  // namespace
