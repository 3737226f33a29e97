#include "zlib/common/ZTextEdit.h"

#include "support/ExpectZException.h"
#include "zlib/Canvas.h"
#include "zlib/TestView.h"
#include "zlib/common/ZKeyCode.h"
#include "zlib/common/ZLabelButton.h"
#include "zlib/common/ZMessage.h"
#include "zlib/common/ZMessageIds.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane
{

namespace
{

class DirtyEdit : public ZTextEdit
{
public:
    using ZTextEdit::ZTextEdit;

    void SetDirty() { mDirty = true; }
};

class ZTextEditTest : public testing::Test
{
protected:
    void SetUp() override
    {
        edit.SetContext(canvas);
        edit.SetFocus(true);
    }

    void Type(const char* text)
    {
        const auto message = boost::make_shared<ZMessage>(ZTEXTINPUT);
        message->Add<ZString>("Text", ZString(text));
        edit.HandleZMessage(message);
    }
    /// The text with a bar at the caret and brackets around the selection.
    std::string Key(std::uint8_t key, bool shift = false, bool control = false)
    {
        const auto message = boost::make_shared<ZMessage>(ZKEYDOWN);
        message->Add<std::uint8_t>("Key", key);
        message->Add<bool>("shift", shift);
        message->Add<bool>("control", control);
        edit.HandleZMessage(message);
        return Picture();
    }
    [[nodiscard]] std::string Picture() const
    {
        const ZTextField& field = edit.GetField();
        const auto before = [&](std::size_t place) {
            return field.GetTextBefore(place).ToNarrow();
        };
        const std::string all = edit.GetText().ToNarrow();
        const std::size_t start = before(field.GetSelectionStart()).size();
        const std::size_t end = before(field.GetSelectionEnd()).size();
        if (!field.HasSelection())
            return all.substr(0, start) + "|" + all.substr(start);
        return all.substr(0, start) + "[" + all.substr(start, end - start) + "]" + all.substr(end);
    }
    /// Whether the text or the caret lies in the column.
    [[nodiscard]] bool HasInkAt(std::int32_t x)
    {
        edit.SetDirty();
        edit.DrawView({0, 0, 1000, 1000});
        for (std::int32_t y = 2; y < 20; ++y)
            if ((canvas->At(x, y) & 0xff) > 100)
                return true;
        return false;
    }

    const boost::shared_ptr<Canvas> canvas = boost::make_shared<Canvas>(120, 22);
    DirtyEdit edit{viewXml("<view name=\"edit\"><rect name=\"bounds\" left=\"0\" top=\"0\" "
                           "width=\"120\" height=\"22\" /></view>"),
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
    EXPECT_EQ(Key(kKeyLeft, true), "a[b]");
    Type("\t\x1f\x7f"
         "c\xc3\xa4");
    EXPECT_EQ(Picture(), "ac\xc3\xa4|");
}

TEST_F(ZTextEditTest, KeysMoveSelectAndErase)
{
    edit.SetText("one two");
    EXPECT_EQ(Key(kKeyRight), "one two|");
    EXPECT_EQ(Key(kKeyLeft, false, true), "one |two");
    EXPECT_EQ(Key(kKeyLeft, true), "one[ ]two");
    EXPECT_EQ(Key(kKeyLeft), "one| two");
    EXPECT_EQ(Key(kKeyDelete), "one|two");
    EXPECT_EQ(Key(kKeyBackspace), "on|two");
    EXPECT_EQ(Key(kKeyHome, true), "[on]two");
    EXPECT_EQ(Key(kKeyDelete), "|two");
    EXPECT_EQ(Key(kKeyBackspace), "|two");
    EXPECT_EQ(Key(kKeyEnd), "two|");
    EXPECT_EQ(Key(kKeyDelete), "two|");
    EXPECT_EQ(Key('A', false, true), "[two]");
    EXPECT_EQ(Key('A'), "[two]");
    EXPECT_EQ(Key(kKeyHome), "|two");
    EXPECT_EQ(Key(kKeyRight, true, true), "[two]");
}

TEST_F(ZTextEditTest, APairOfSurrogatesIsOneCharacter)
{
    edit.SetText("a\xf0\x9f\x8e\xb5");
    EXPECT_EQ(edit.GetField().GetLength(), 3u);
    Key(kKeyEnd);
    EXPECT_EQ(Key(kKeyLeft), "a|\xf0\x9f\x8e\xb5");
    EXPECT_EQ(Key(kKeyRight), "a\xf0\x9f\x8e\xb5|");
    EXPECT_EQ(Key(kKeyBackspace), "a|");
}

TEST_F(ZTextEditTest, TheTextEndsAtItsLimitWithoutHalfACharacter)
{
    const std::string full(255, 'x');
    edit.SetText(ZString(full));
    Key(kKeyEnd);
    Type("\xf0\x9f\x8e\xb5");
    EXPECT_EQ(edit.GetText().ToNarrow(), full);
    Type("yz");
    EXPECT_EQ(edit.GetText().ToNarrow(), full + "y");
}

TEST_F(ZTextEditTest, AMissingFieldIsNamed)
{
    expectZException(-1, "Couldn't find Text in Message",
                     [&] { edit.HandleZMessage(boost::make_shared<ZMessage>(ZTEXTINPUT)); });
    expectZException(-1, "Couldn't find Key in Message",
                     [&] { edit.HandleZMessage(boost::make_shared<ZMessage>(ZKEYDOWN)); });
}

TEST_F(ZTextEditTest, ReturnAndEscapeEndIt)
{
    std::string log;
    edit.SetReturnAction([&log] { log += "return "; });
    edit.SetEscapeAction([&log] { log += "escape "; });
    Key(kKeyReturn);
    Key(kKeyEscape);
    EXPECT_EQ(log, "return escape ");
}

TEST_F(ZTextEditTest, TheMousePlacesTheCaretAndSelects)
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
}

TEST_F(ZTextEditTest, ALongTextScrollsWithItsCaret)
{
    edit.SetText("iiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiii        ");
    Key(kKeyEnd);
    EXPECT_TRUE(HasInkAt(114));  // the caret
    Key(kKeyHome);
    EXPECT_TRUE(HasInkAt(5));
    edit.MouseDown({5, 10}, ZView::kMouseButton);
    EXPECT_EQ(edit.GetField().GetCaret(), 0u);
}

TEST(ZLabelButtonTest, ActsWhenItIsReleasedOverItself)
{
    ZLabelButton button(viewXml("<view><rect name=\"bounds\" left=\"0\" top=\"0\" width=\"60\" "
                                "height=\"22\" /><label text=\"OK\" /></view>"),
                        nullptr);
    const auto canvas = boost::make_shared<Canvas>(60, 22);
    button.SetContext(canvas);
    int count = 0;
    button.SetAction([&count] { ++count; });
    button.MouseUp({5, 5}, 1);
    EXPECT_EQ(count, 0);
    button.MouseDown({5, 5}, 1);
    button.DrawView({0, 0, 60, 22});
    const auto pressed = canvas->At(3, 3);
    button.MouseMoved({90, 5}, 1);
    button.MouseUp({90, 5}, 1);
    EXPECT_EQ(count, 0);
    button.MouseDown({5, 5}, 1);
    button.MouseUp({5, 5}, 1);
    EXPECT_EQ(count, 1);
    EXPECT_NE(pressed, 0u);
}

}  // namespace orvane
