// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMenuContent.h"

#include "support/Test.h"

#include <boost/smart_ptr/make_shared.hpp>

using namespace orvane;

namespace
{

using Mouse = ZNativeMouseEvent;

/// Shows what is highlighted and scrolled to.
struct OpenMenuContent : ZMenuContent
{
    using ZMenuContent::mFirst;
    using ZMenuContent::mHighlight;
    using ZMenuContent::ZMenuContent;
};

/// A menu of items whose index is ten times their place, one with a check mark.
std::unique_ptr<OpenMenuContent> makeContent(const std::vector<std::string>& texts,
                                             std::int32_t checked = 20)
{
    ZMenu menu("menu", ZMenu::Kind::kPopup);
    for (std::size_t i = 0; i < texts.size(); ++i)
        menu.AddItem(ZString(texts[i]), static_cast<std::int32_t>(i) * 10);
    menu.CheckItem(checked, true);
    auto content = std::make_unique<OpenMenuContent>(menu);
    content->SetSize(content->GetSize());
    return content;
}

struct ZMenuContentTest : testing::Test
{
    void SetUp() override
    {
        content.SetEnded([this] { ++ends; });
    }

    [[nodiscard]] ZPoint Middle(std::int32_t place) const
    {
        const ZRect rect = content.GetItemRect(place);
        return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    }
    bool Send(Mouse::Action action, const ZPoint& at, std::int32_t notches = 0)
    {
        return content.Mouse(
            {.action = action, .position = at, .modifiers = 1, .wheelNotches = notches});
    }
    std::int32_t HighlightAfter(std::uint8_t code, const char* text = "")
    {
        content.Key({.code = code, .text = ZString(text)});
        return content.mHighlight;
    }

    const std::unique_ptr<OpenMenuContent> owned =
        makeContent({"Alto", "Bass", "Baritone", "Tenor", "Basso", "Soprano"});
    OpenMenuContent& content = *owned;
    int ends = 0;
};

constexpr ZPoint kOutside{-50, 20};

}  // namespace

TEST_F(ZMenuContentTest, HurriedClickChoosesNothing)
{
    const ZPoint at = Middle(0);
    content.StartAt(at);
    Send(Mouse::kMove, {at.x + 4, at.y - 4});
    Send(Mouse::kUp, {at.x + 4, at.y - 4});
    Send(Mouse::kDoubleClick, at);
    Send(Mouse::kUp, at);
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(content.mHighlight, 2);

    content.ArmButtons();
    Send(Mouse::kDown, at);
    EXPECT_EQ(content.mHighlight, 0);
    Send(Mouse::kUp, at);
    EXPECT_EQ(content.GetChosen(), 0) << "the menu has been open long enough";
}

TEST_F(ZMenuContentTest, OpeningPressChoosesAfterADragToAnotherItem)
{
    content.StartAt(Middle(0));
    Send(Mouse::kMove, {Middle(0).x + 30, Middle(0).y});
    EXPECT_EQ(content.mHighlight, 0);
    Send(Mouse::kUp, Middle(0));
    EXPECT_EQ(ends, 0) << "still over the first item";
    EXPECT_TRUE(Send(Mouse::kMove, Middle(4)));
    EXPECT_FALSE(Send(Mouse::kMove, Middle(4)));
    Send(Mouse::kUp, Middle(4));
    EXPECT_EQ(content.GetChosen(), 40);
    EXPECT_EQ(ends, 1);
}

TEST_F(ZMenuContentTest, PressOrDragOutsideDismissesIt)
{
    content.ArmButtons();
    Send(Mouse::kMove, {kOutside.x + 40, kOutside.y});
    Send(Mouse::kUp, kOutside);
    EXPECT_EQ(ends, 0) << "a drag that has not been over an item";
    Send(Mouse::kMove, Middle(4));
    EXPECT_TRUE(Send(Mouse::kMove, kOutside));
    EXPECT_EQ(content.mHighlight, -1);
    Send(Mouse::kUp, kOutside);
    EXPECT_EQ(ends, 1);
    EXPECT_FALSE(content.GetChosen().has_value());

    for (const bool isByKey : {false, true}) {
        const auto other = makeContent({"one"});
        other->SetEnded([&] { ++ends; });
        other->StartAt({5, 5});
        isByKey ? other->Key({.code = kKeyEscape, .text = {}})
                : other->Mouse({.action = Mouse::kDown, .position = kOutside});
        EXPECT_EQ(ends, isByKey ? 3 : 2);
        EXPECT_FALSE(other->GetChosen().has_value());
    }
}

TEST_F(ZMenuContentTest, KeysMoveTheHighlightFindALetterAndChoose)
{
    const std::tuple<int, const char*, int> steps[] = {
        {kKeyDown, "", 3}, {kKeyHome, "", 0}, {kKeyUp, "", 5},       {kKeyDown, "", 0},
        {kKeyEnd, "", 5},  {'B', "b", 1},     {'B', "B", 2},         {'B', "b", 4},
        {'B', "b", 1},     {'X', "x", 1},     {kKeyPageDown, "", 5}, {kKeyPageUp, "", 0}};
    for (const auto& [key, text, highlight] : steps)
        EXPECT_EQ(HighlightAfter(static_cast<std::uint8_t>(key), text), highlight) << key << text;
    EXPECT_EQ(ends, 0);
    HighlightAfter(kKeyReturn);
    EXPECT_EQ(content.GetChosen(), 0);
}

TEST_F(ZMenuContentTest, ScrollsIfItsWindowIsTooLow)
{
    content.SetSize({content.GetSize().x, content.GetItemRect(2).bottom + 30});
    const ZPoint size = content.GetSize();
    EXPECT_TRUE(content.GetItemRect(3).IsEmpty());
    EXPECT_LE(content.GetItemRect(2).bottom, size.y);
    EXPECT_TRUE(Send(Mouse::kWheel, Middle(1), -1));
    EXPECT_EQ(content.mFirst, 3);
    EXPECT_EQ(HighlightAfter(kKeyHome), 0);
    EXPECT_EQ(content.mFirst, 0);
    const ZPoint lowerArrow{size.x / 2, size.y - 4};
    Send(Mouse::kMove, {lowerArrow.x, lowerArrow.y - 20});
    Send(Mouse::kMove, lowerArrow);
    content.ArmButtons();
    EXPECT_TRUE(content.ScrollByPointer());
    Send(Mouse::kDown, lowerArrow);
    Send(Mouse::kUp, lowerArrow);
    EXPECT_EQ(content.mFirst, 2);
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(content.ScrollByPointer());
    EXPECT_FALSE(content.ScrollByPointer());
    EXPECT_EQ(HighlightAfter(kKeyUp), 5);
    EXPECT_EQ(content.mFirst, 3);

    const auto low = makeContent({"a", "b", "c", "d", "e", "f"}, 50);
    low->SetSize({low->GetSize().x, 80});
    EXPECT_FALSE(low->GetItemRect(5).IsEmpty()) << "it opens with the checked item in view";
}

TEST_F(ZMenuContentTest, TheReleaseOfTheOpeningPressChoosesOnlyAfterAMove)
{
    content.StartAt(Middle(3));
    content.ArmButtons();
    Send(Mouse::kContextUp, Middle(3));
    EXPECT_EQ(ends, 0) << "held for long without a move";
    Send(Mouse::kMove, Middle(4));
    Send(Mouse::kContextUp, Middle(4));
    EXPECT_EQ(content.GetChosen(), 40);
}

TEST_F(ZMenuContentTest, DisabledItemsArePassedOverAndSubmenusAreOpened)
{
    ZMenu menu("menu", ZMenu::Kind::kPopup);
    menu.AddItem("Info", 0).enabled = false;
    menu.AddItem("Bass", 1).checked = true;
    menu.AddSubmenu("Tenor", boost::make_shared<ZMenu>("sub", ZMenu::Kind::kPopup));
    menu.AddItem("Tacet", 3).enabled = false;
    OpenMenuContent nested(menu);
    nested.SetSize(nested.GetSize());
    EXPECT_EQ(nested.GetHighlight(), -1) << "the mark is a switch's, not that of a choice";
    std::vector<std::pair<std::int32_t, bool>> opened;
    nested.SetSubmenuOpener(
        [&](std::int32_t place, bool byKey) { opened.emplace_back(place, byKey); });
    const auto key = [&](std::uint8_t code, const char* text = "") {
        nested.Key({.code = code, .text = ZString(text)});
        return nested.GetHighlight();
    };
    const std::pair<std::uint8_t, int> steps[] = {
        {kKeyDown, 1}, {kKeyDown, 2}, {kKeyDown, 1}, {kKeyEnd, 2}, {kKeyPageUp, 1}};
    for (const auto& [code, highlight] : steps)
        EXPECT_EQ(key(code), highlight) << &code - &steps[0].first;
    EXPECT_EQ(key('T', "t"), 2);
    EXPECT_EQ(key('I', "i"), 2);
    key(kKeyReturn);
    const auto at = [&](std::int32_t place) {
        const ZRect rect = nested.GetItemRect(place);
        return ZPoint{rect.left + 30, rect.top + 5};
    };
    nested.ArmButtons();
    nested.Mouse({.action = Mouse::kMove, .position = at(3)});
    nested.Mouse({.action = Mouse::kDown, .position = at(3)});
    EXPECT_EQ(nested.GetHighlight(), -1);
    nested.Mouse({.action = Mouse::kUp, .position = at(3)});
    nested.Mouse({.action = Mouse::kDown, .position = at(2)});
    nested.Mouse({.action = Mouse::kUp, .position = at(2)});
    EXPECT_EQ(opened,
              (std::vector<std::pair<std::int32_t, bool>>{{2, true}, {2, false}, {2, false}}));
    EXPECT_FALSE(nested.GetChosen().has_value());
}
