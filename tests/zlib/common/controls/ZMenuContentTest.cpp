// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMenuContent.h"

#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/views/ZPanelStyle.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane
{

namespace
{

using Mouse = ZNativeMouseEvent;

/// A menu of items whose index is ten times their place, one with a check mark, at its own size.
std::unique_ptr<ZMenuContent> makeContent(const std::vector<std::string>& texts,
                                          std::int32_t checked = 20)
{
    ZMenu menu("menu", ZMenu::Kind::kPopup);
    for (std::size_t i = 0; i < texts.size(); ++i)
        menu.AddItem(ZString(texts[i]), static_cast<std::int32_t>(i) * 10);
    menu.CheckItem(checked, true);
    return std::make_unique<ZMenuContent>(menu);
}

class ZMenuContentTest : public testing::Test
{
protected:
    void SetUp() override
    {
        content.SetEnded([this] { ++ends; });
        content.SetSize(content.GetSize());
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
    std::int32_t Key(std::uint8_t code, const char* text = "")
    {
        content.Key({.code = code, .text = ZString(text)});
        return content.GetHighlight();
    }

    const std::unique_ptr<ZMenuContent> owned =
        makeContent({"Alto", "Bass", "Baritone", "Tenor", "Basso", "Soprano"});
    ZMenuContent& content = *owned;
    int ends = 0;
};

constexpr ZPoint kOutside{-50, 20};

}  // namespace

TEST_F(ZMenuContentTest, ThePressThatOpenedItChoosesWhenItIsDraggedAndAnotherOneAtOnce)
{
    Send(Mouse::kMove, Middle(0));
    Send(Mouse::kUp, Middle(0));
    EXPECT_EQ(content.GetHighlight(), 2) << "a release where it opened is nothing";
    Send(Mouse::kMove, Middle(2));
    EXPECT_TRUE(Send(Mouse::kMove, Middle(4)));
    EXPECT_FALSE(Send(Mouse::kMove, Middle(4)));
    EXPECT_EQ(ends, 0);
    Send(Mouse::kUp, Middle(4));
    EXPECT_EQ(content.GetChosen(), 40);
    Send(Mouse::kDown, Middle(1));
    Send(Mouse::kUp, Middle(1));
    EXPECT_EQ(content.GetChosen(), 40);
    EXPECT_EQ(ends, 1);

    const auto other = makeContent({"one"});
    other->SetSize(other->GetSize());
    other->Mouse({.action = Mouse::kDown, .position = {9, 9}});
    other->Mouse({.action = Mouse::kUp, .position = {9, 9}});
    EXPECT_EQ(other->GetChosen(), 0);
}

TEST_F(ZMenuContentTest, APressOrADragOutsideEndsItWithNone)
{
    Send(Mouse::kMove, {kOutside.x + 40, kOutside.y});
    Send(Mouse::kUp, kOutside);  // beside the menu, where no item has been under the pointer
    EXPECT_EQ(ends, 0);
    Send(Mouse::kMove, Middle(4));
    EXPECT_TRUE(Send(Mouse::kMove, kOutside));
    EXPECT_EQ(content.GetHighlight(), -1);
    Send(Mouse::kUp, kOutside);
    EXPECT_EQ(ends, 1);
    EXPECT_FALSE(content.GetChosen().has_value());

    const auto pressed = makeContent({"one"});
    pressed->Mouse({.action = Mouse::kDown, .position = kOutside});
    EXPECT_TRUE(pressed->HasEnded());
    EXPECT_FALSE(pressed->GetChosen().has_value());
    const auto left = makeContent({"one"});
    left->FocusLost();
    EXPECT_TRUE(left->HasEnded());
}

TEST_F(ZMenuContentTest, KeysMoveFindChooseAndEnd)
{
    EXPECT_EQ(Key(kKeyDown), 3);
    EXPECT_EQ(Key(kKeyHome), 0);
    EXPECT_EQ(Key(kKeyUp), 5);
    EXPECT_EQ(Key(kKeyDown), 0);
    EXPECT_EQ(Key(kKeyEnd), 5);
    EXPECT_EQ(Key('B', "b"), 1);
    EXPECT_EQ(Key('B', "B"), 2);
    EXPECT_EQ(Key('B', "b"), 4);
    EXPECT_EQ(Key('B', "b"), 1);
    EXPECT_EQ(Key('X', "x"), 1);
    EXPECT_EQ(Key(kKeyPageDown), 5);
    EXPECT_EQ(Key(kKeyPageUp), 0);
    EXPECT_EQ(ends, 0);
    Key(kKeyReturn);
    EXPECT_EQ(content.GetChosen(), 0);
    const auto escaped = makeContent({"one"});
    escaped->Key({.code = kKeyEscape, .text = {}});
    EXPECT_TRUE(escaped->HasEnded());
    EXPECT_FALSE(escaped->GetChosen().has_value());
}

TEST_F(ZMenuContentTest, ItScrollsWhereItsWindowIsTooLow)
{
    content.SetSize({content.GetSize().x, content.GetItemRect(2).bottom + 30});
    const ZPoint size = content.GetSize();
    EXPECT_TRUE(content.GetItemRect(3).IsEmpty());
    EXPECT_LE(content.GetItemRect(2).bottom, size.y);
    EXPECT_TRUE(Send(Mouse::kWheel, Middle(1), -1));
    EXPECT_EQ(content.GetFirstInSight(), 3);
    EXPECT_EQ(Key(kKeyHome), 0);
    EXPECT_EQ(content.GetFirstInSight(), 0);
    // The pointer on the lower arrow.
    const ZPoint lower{size.x / 2, size.y - 4};
    Send(Mouse::kMove, {lower.x, lower.y - 20});
    Send(Mouse::kMove, lower);
    EXPECT_TRUE(content.Tick());
    Send(Mouse::kDown, lower);
    Send(Mouse::kUp, lower);
    EXPECT_EQ(content.GetFirstInSight(), 2);
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(content.Tick());
    EXPECT_FALSE(content.Tick());
    EXPECT_EQ(Key(kKeyUp), 5);
    EXPECT_EQ(content.GetFirstInSight(), 3);

    const auto low = makeContent({"a", "b", "c", "d", "e", "f"}, 50);
    low->SetSize({low->GetSize().x, 80});
    EXPECT_FALSE(low->GetItemRect(5).IsEmpty()) << "the checked item is in sight from the start";
}

TEST_F(ZMenuContentTest, DrawsTheHighlightAndTheCheckMark)
{
    Canvas canvas(content.GetSize().x, content.GetSize().y);
    const ZRect marked = content.GetItemRect(2);
    const auto hasMark = [&](std::int32_t place) {
        content.Draw(canvas);
        const ZRect rect = content.GetItemRect(place);
        const std::uint32_t ground = canvas.At(rect.left + 1, rect.top + 1);
        bool found = false;
        for (std::int32_t x = rect.left; x < rect.left + 22; ++x)
            found = found || canvas.At(x, Middle(place).y) != ground;
        return found;
    };
    EXPECT_TRUE(hasMark(2));
    EXPECT_FALSE(hasMark(1));
    EXPECT_EQ(canvas.At(marked.left, marked.top), 0xff961820);
    Key(kKeyDown);
    EXPECT_TRUE(hasMark(2));
    EXPECT_EQ(canvas.At(marked.left, marked.top), 0xff262629);
}

}  // namespace orvane
