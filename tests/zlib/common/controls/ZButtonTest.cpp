// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZBitmapButton.h"
#include "zlib/common/controls/ZCheckBox.h"
#include "zlib/common/documents/DocumentFixture.h"
#include "zlib/common/documents/ZCommand.h"
#include "zlib/common/views/ViewCanvas.h"

using namespace orvane;

namespace
{

/// Counts how often it is run.
struct CountingCommand : ZCommand
{
    explicit CountingCommand(ZApplication* application)
        : ZCommand(xmlOf("<command name=\"count\"></command>"), application)
    {
    }
    void Dispatch() override { ++runs; }

    int runs = 0;
};

struct ZBitmapButtonTest : ViewCanvasTest
{
    using Picture = ZBitmapButton::Picture;

    /// A button whose pictures have different widths.
    boost::shared_ptr<ZBitmapButton> MakeButton(bool momentary,
                                                const std::vector<Picture>& pictures)
    {
        auto button = Make<ZBitmapButton>(momentary ? "momentary=\"true\"" : "");
        for (const Picture picture : pictures)
            button->SetPicture(picture, plainBitmap(1 + static_cast<std::int32_t>(picture), 4));
        return button;
    }
    /// The picture that the button paints.
    Picture Shown(ZBitmapButton& button)
    {
        Paint(button);
        return static_cast<Picture>(canvas->Ink().right - 1);
    }

    static constexpr ZPoint kInside{50, 10};
    static constexpr ZPoint kOutside{111, 10};
};

TEST_F(ZBitmapButtonTest, LatchingButtonSwitchesOnThePress)
{
    const auto button = MakeButton(false, {ZBitmapButton::kOff, ZBitmapButton::kOn});
    const auto element = MakeDiscrete({"off", "on"});
    button->AttachToElement(element);
    button->MouseDown(kInside, ZView::kMouseButton);
    EXPECT_EQ(element->GetDiscrete(), 1);
    EXPECT_FALSE(button->HasMouseCapture());
    EXPECT_EQ(Shown(*button), ZBitmapButton::kOff) << "the picture follows the element's report";
    Tell(*element);
    EXPECT_EQ(Shown(*button), ZBitmapButton::kOn);
    button->MouseUp(kInside, ZView::kMouseButton);
    button->SetMomentary(true);
    button->MouseDown(kInside, ZView::kMouseButton);
    EXPECT_EQ(element->GetDiscrete(), 1);
    button->MouseUp(kInside, ZView::kMouseButton);
    EXPECT_EQ(element->GetDiscrete(), 0);
}

TEST_F(ZBitmapButtonTest, MomentaryButtonNeedsPressAndReleaseInside)
{
    const auto button = MakeButton(true, {ZBitmapButton::kOff, ZBitmapButton::kPressWhileOff});
    const auto command = boost::make_shared<CountingCommand>(&app);
    button->SetMomentaryCommand(command);
    button->MouseDown(kInside, ZView::kMouseButton);
    EXPECT_TRUE(button->HasMouseCapture());
    EXPECT_EQ(Shown(*button), ZBitmapButton::kPressWhileOff);
    button->MouseMoved(kOutside, ZView::kMouseButton);
    EXPECT_EQ(Shown(*button), ZBitmapButton::kOff);
    button->MouseMoved({110, 20}, ZView::kMouseButton);
    EXPECT_EQ(Shown(*button), ZBitmapButton::kPressWhileOff) << "edges belong to the button";
    button->MouseUp({110, 20}, ZView::kMouseButton);
    EXPECT_EQ(command->runs, 1);
    EXPECT_EQ(Shown(*button), ZBitmapButton::kOff);

    button->MouseDown(kInside, ZView::kMouseButton);
    button->MouseUp(kOutside, ZView::kMouseButton);
    EXPECT_FALSE(button->HasMouseCapture());
    button->MouseUp(kInside, ZView::kMouseButton);
    EXPECT_EQ(command->runs, 1) << "a release without a press on the button";
}

TEST_F(ZBitmapButtonTest, DisabledCommandGreysTheButtonAndBlocksThePress)
{
    const auto command = boost::make_shared<CountingCommand>(&app);
    {
        const auto button = MakeButton(
            true, {ZBitmapButton::kOff, ZBitmapButton::kOver, ZBitmapButton::kDisabledOff});
        button->SetMomentaryCommand(command);
        command->Disable();
        app.ProcessQueue();
        button->MouseEntered(kInside);
        EXPECT_EQ(Shown(*button), ZBitmapButton::kDisabledOff);
        button->MouseDown(kInside, ZView::kMouseButton);
        EXPECT_FALSE(button->HasMouseCapture());
        command->Enable();
        app.ProcessQueue();
        EXPECT_EQ(Shown(*button), ZBitmapButton::kOver);
    }
    EXPECT_EQ(command->GetObserverCount(), 0);
}

TEST_F(ZBitmapButtonTest, ShowsTheFirstPictureThatFitsTheState)
{
    using B = ZBitmapButton;
    const std::vector<Picture> all{
        B::kOff,         B::kOn,         B::kPress, B::kPressWhileOn, B::kPressWhileOff,
        B::kDisabledOff, B::kDisabledOn, B::kOver,  B::kOverWhileOn,  B::kOverWhileOff};
    const std::vector<Picture> pressed{B::kOff, B::kPressWhileOn, B::kPressWhileOff};
    const std::tuple<std::vector<Picture>, std::string, Picture> cases[] = {
        {all, "on pressed over", B::kPress},
        {all, "over", B::kOver},
        {all, "over disabled", B::kOverWhileOff},
        {all, "on disabled", B::kDisabledOn},
        {all, "on", B::kOn},
        {pressed, "on pressed", B::kPressWhileOn},
        {pressed, "pressed", B::kPressWhileOff},
        {{B::kOff, B::kDisabledOff}, "on disabled", B::kDisabledOff},
        {{B::kOff}, "on pressed over", B::kOff}};
    for (const auto& [pictures, state, shown] : cases) {
        SCOPED_TRACE(state);
        const auto is = [&, &state = state](const char* word) {
            return state.find(word) != std::string::npos;
        };
        const auto button = MakeButton(true, pictures);
        const auto element = MakeDiscrete({"off", "on"});
        element->SetDiscrete(is("on") ? 1 : 0, true);
        button->AttachToElement(element);
        if (is("pressed"))
            button->MouseDown(kInside, ZView::kMouseButton);
        if (is("over"))
            button->MouseEntered(kInside);
        button->SetEnabled(!is("disabled"));
        EXPECT_EQ(Shown(*button), shown);
    }
}

using ZCheckBoxTest = ViewCanvasTest;

TEST_F(ZCheckBoxTest, PressSwitchesBetweenZeroAndOne)
{
    const auto box = Make<ZCheckBox>("");
    box->MouseDown({5, 5}, ZView::kMouseButton);  // without an element
    const auto element = MakeDiscrete({"a", "b", "c"});
    box->AttachToElement(element);
    for (const auto& [before, after] : {std::pair{0, 1}, {1, 0}, {2, 0}}) {
        element->SetDiscrete(before, true);
        box->MouseDown({5, 5}, ZView::kMouseButton);
        EXPECT_EQ(element->GetDiscrete(), after) << before;
    }
    EXPECT_FALSE(box->HasMouseCapture());
}

}  // namespace
