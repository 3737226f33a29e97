// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZTextEdit.h"

#include "support/MessageWith.h"
#include "support/Test.h"
#include "support/TestClipboard.h"
#include "zlib/common/controls/ZLabelButton.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/views/TestView.h"

using namespace orvane;

namespace
{

boost::shared_ptr<ZMessage> keyDown(std::uint8_t key, bool shift = false, bool control = false)
{
    return messageWith(ZKEYDOWN, "Key", key, "shift", shift, "control", control);
}

struct OpenTextEdit : ZTextEdit
{
    using ZTextEdit::mField;
    using ZTextEdit::ZTextEdit;
};

struct ZTextEditTest : testing::Test
{
    ZTextEditTest() { edit.SetContext(canvas); }

    void Type(const char* text)
    {
        edit.HandleZMessage(messageWith<ZString>(ZTEXTINPUT, "Text", text));
    }
    std::string After(std::uint8_t key, bool shift = false, bool control = false)
    {
        edit.HandleZMessage(keyDown(key, shift, control));
        return Picture();
    }
    /// The text with a bar at the caret or brackets around the selection.
    [[nodiscard]] std::string Picture() const
    {
        const ZTextField& field = edit.mField;
        std::string text = edit.GetText().ToNarrow();
        const auto bytesTo = [&](std::size_t place) {
            return field.GetTextBefore(place).ToNarrow().size();
        };
        const std::size_t start = bytesTo(field.GetSelectionStart());
        if (!field.HasSelection())
            return text.insert(start, "|");
        return text.insert(bytesTo(field.GetSelectionEnd()), "]").insert(start, "[");
    }

    const boost::shared_ptr<Canvas> canvas = boost::make_shared<Canvas>(120, 22);
    OpenTextEdit edit{xmlOf("<view><rect name=\"bounds\" left=\"0\" top=\"0\" width=\"120\" "
                            "height=\"22\" /></view>"),
                      nullptr};
};

}  // namespace

TEST_F(ZTextEditTest, TypingReplacesTheSelection)
{
    edit.SetText("Major (copy)");
    EXPECT_EQ(Picture(), "[Major (copy)]");
    Type("a");
    Type("b");
    EXPECT_EQ(Picture(), "ab|");
    EXPECT_EQ(After(kKeyLeft, true), "a[b]");
    Type("\t\x1f\x7f"
         "c\xc3\xa4");
    EXPECT_EQ(Picture(), "ac\xc3\xa4|");
}

TEST_F(ZTextEditTest, KeysMoveTheCaretSelectAndErase)
{
    edit.SetText("one two");
    const std::tuple<int, const char*, const char*> steps[] = {
        {kKeyRight, "", "one two|"}, {kKeyLeft, "c", "one |two"}, {kKeyLeft, "s", "one[ ]two"},
        {kKeyLeft, "", "one| two"},  {kKeyDelete, "", "one|two"}, {kKeyBackspace, "", "on|two"},
        {kKeyHome, "s", "[on]two"},  {kKeyDelete, "", "|two"},    {kKeyBackspace, "", "|two"},
        {kKeyEnd, "", "two|"},       {kKeyDelete, "", "two|"},    {'A', "c", "[two]"},
        {'A', "", "[two]"},          {kKeyHome, "", "|two"},      {kKeyRight, "sc", "[two]"}};
    for (const auto& [key, held, picture] : steps)
        EXPECT_EQ(After(static_cast<std::uint8_t>(key), std::strchr(held, 's') != nullptr,
                        std::strchr(held, 'c') != nullptr),
                  picture);
}

TEST_F(ZTextEditTest, SurrogatePairIsOneCharacter)
{
    edit.SetText("a\xf0\x9f\x8e\xb5");
    After(kKeyEnd);
    EXPECT_EQ(After(kKeyLeft), "a|\xf0\x9f\x8e\xb5");
    EXPECT_EQ(After(kKeyRight), "a\xf0\x9f\x8e\xb5|");
    EXPECT_EQ(After(kKeyBackspace), "a|");

    const std::string full(255, 'x');
    edit.SetText(ZString(full));
    After(kKeyEnd);
    Type("\xf0\x9f\x8e\xb5");
    EXPECT_EQ(edit.GetText().ToNarrow(), full);
    Type("yz");
    EXPECT_EQ(edit.GetText().ToNarrow(), full + "y");
}

TEST_F(ZTextEditTest, MousePlacesTheCaretAndSelectsAndADoubleClickTakesWordsOrBlanks)
{
    edit.SetText("WWWW");
    const std::int32_t letter = edit.StringWidth("WWWW") / 4;
    edit.MouseDown({5 + letter + 2, 10}, ZView::kMouseButton);
    EXPECT_EQ(Picture(), "W|WWW");
    edit.MouseMoved({5 + 3 * letter - 2, 10}, ZView::kMouseButton);
    EXPECT_EQ(Picture(), "W[WW]W");
    edit.MouseMoved({-100, 10}, ZView::kMouseButton);
    EXPECT_EQ(Picture(), "[W]WWW");
    edit.MouseUp({-100, 10}, ZView::kMouseButton);
    EXPECT_FALSE(edit.HasMouseCapture());
    edit.MouseDown({500, 10}, ZView::kMouseButton | ZView::kMouseShift);
    EXPECT_EQ(Picture(), "W[WWW]");
    edit.MouseDoubleClick({10, 10}, ZView::kMouseButton);
    EXPECT_EQ(Picture(), "[WWWW]");
    edit.SetText("WW  WWW");
    const auto doubleClickAt = [&](std::int32_t x) {
        edit.MouseDoubleClick({5 + x, 10}, ZView::kMouseButton);
        return Picture();
    };
    EXPECT_EQ(doubleClickAt(letter), "[WW]  WWW");
    EXPECT_EQ(doubleClickAt(2 * letter + 1), "WW[  ]WWW");
    EXPECT_EQ(doubleClickAt(500), "WW  [WWW]") << "behind the end";
    edit.SetText("");
    EXPECT_EQ(doubleClickAt(3), "|");
}

TEST_F(ZTextEditTest, ShortcutsCopyCutAndPasteTheSelection)
{
    TestClipboard clipboard;
    edit.SetText("one two");
    EXPECT_EQ(After('V', false, true), "[one two]") << "the clipboard is empty";
    EXPECT_EQ(After('C', false, true), "[one two]");
    EXPECT_EQ(After(kKeyEnd), "one two|");
    EXPECT_EQ(After('C', false, true), "one two|");
    EXPECT_EQ(clipboard.content, "one two") << "nothing is selected, so nothing is copied";
    After(kKeyLeft, true, true);
    EXPECT_EQ(After('X', false, true), "one |");
    EXPECT_EQ(clipboard.content, "two");
    EXPECT_EQ(After(kKeyInsert, true), "one two|");
    After(kKeyHome, true);
    EXPECT_EQ(After(kKeyInsert, false, true), "[one two]");
    EXPECT_EQ(After(kKeyDelete, true), "|");
    clipboard.content = "a\nb";
    EXPECT_EQ(After('V', false, true), "ab|") << "a field of one line";
    EXPECT_TRUE(edit.WantsKey({'Q', {}})) << "what is typed is not the host's";
    EXPECT_FALSE(edit.WantsKey({kKeyTab, {}}));
}

TEST(ZLabelButtonTest, ActsOnAClickReturnAndTheSpaceBar)
{
    ZLabelButton button(xmlOf("<view><rect name=\"bounds\" left=\"0\" top=\"0\" width=\"60\" "
                              "height=\"22\" /><label text=\"OK\" /></view>"),
                        nullptr);
    int count = 0;
    button.SetAction([&count] { ++count; });
    button.MouseUp({5, 5}, 1);
    button.MouseDown({5, 5}, 1);
    button.MouseMoved({90, 5}, 1);
    button.MouseUp({90, 5}, 1);
    EXPECT_EQ(count, 0) << "a release without a press, and one outside";
    button.MouseDown({5, 5}, 1);
    button.MouseUp({5, 5}, 1);
    EXPECT_EQ(count, 1);
    for (const std::uint8_t key : {kKeyReturn, kKeySpace, kKeyDown})
        button.HandleZMessage(keyDown(key));
    EXPECT_EQ(count, 3);
}
