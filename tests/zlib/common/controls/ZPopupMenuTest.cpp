// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ExpectZException.h"
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/controls/ZMetalPopupMenu.h"
#include "zlib/common/views/ViewCanvas.h"

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
    /// Opens the menu, where the user chooses that one or none; the items that were shown.
    std::string Open(ZPopupMenu& menu, std::optional<std::int32_t> choice = std::nullopt)
    {
        user = [choice] { return choice; };
        menu.MouseDown({90, 18}, ZView::kMouseButton);
        return items;
    }

    /// What the user does with the open menu.
    std::function<std::optional<std::int32_t>()> user;
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
    EXPECT_EQ(Open(*menu), "A B C* ");
    EXPECT_EQ(position, (ZPoint{6, 4})) << "over the text, wherever the press was";
    EXPECT_EQ(element->GetDiscrete(), 2) << "nothing chosen";
    Open(*menu, 1);
    EXPECT_EQ(element->GetDiscrete(), 1);
    Tell(*element);
    EXPECT_EQ(Open(*menu), "A B* C ");
    element->SetDiscrete(0, false);
    Tell(*element);
    EXPECT_EQ(Open(*menu), "A* B C ") << "no mark is left behind by a change from elsewhere";

    element->AddDiscreteValue("New");
    app.ProcessQueue();
    EXPECT_EQ(Text(menu->GetMenu()), "A B C New ");
    EXPECT_EQ(menu->GetCheckedIndex(), 0);
    element->RemoveDiscreteValues(false);
    Tell(*element);
    EXPECT_EQ(Text(menu->GetMenu()), "");
    EXPECT_EQ(menu->GetText(), ZString(""));
}

TEST_F(ZPopupMenuTest, ViewAndItemsMayGoWhileTheMenuIsOpen)
{
    const auto element = MakeDiscrete({"A", "B"});
    auto menu = MakeMenu(element);
    ZMetalPopupMenu* const view = menu.get();
    user = [&] {
        menu.reset();
        return 1;
    };
    view->MouseDown({5, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetDiscrete(), 1) << "the choice holds";
    EXPECT_EQ(element->GetObserverCount(), 0);

    menu = MakeMenu(element);
    user = [&] {
        element->RemoveDiscreteValues(true);
        element->AddDiscreteValue("Other");
        element->SetDiscrete(0, true);
        return 1;
    };
    menu->MouseDown({5, 5}, ZView::kMouseButton);
    EXPECT_EQ(element->GetDiscrete(), 0) << "a choice that is no longer there counts for nothing";
}

TEST_F(ZPopupMenuTest, OnlyAPopupWithAnElementOpens)
{
    const auto menu = MakeMenu(nullptr);
    EXPECT_EQ(Open(*menu, 1), "");
    EXPECT_EQ(menu->GetText(), ZString("Unknown"));
    std::int32_t index = 7;
    const ZMenu plain("File", ZMenu::Kind::kPlain);
    expectZException("Menu File is not a popup",
                     [&] { static_cast<void>(plain.Popup({}, nullptr, index)); });
    const ZMenu popup("Choices", ZMenu::Kind::kPopup);
    user = [] { return std::nullopt; };
    EXPECT_FALSE(popup.Popup({}, nullptr, index));
    EXPECT_EQ(index, 0);
}

TEST_F(ZPopupMenuTest, ThePictureIsAMetalButtonWithAnEnd)
{
    const auto menu = MakeMenu(MakeDiscrete({""}));
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
