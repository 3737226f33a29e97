// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ViewCanvas.h"
#include "zlib/common/views/ZBevelView.h"
#include "zlib/common/views/ZPluginLogoView.h"

namespace orvane
{

namespace
{

using ZBasicViewsTest = ViewCanvasTest;

TEST_F(ZBasicViewsTest, LogoShowsALetterForEachMissingVersionPart)
{
    for (const auto& [tag, text] :
         {std::pair{R"(<version major="1" minor="0" sub="1" build="21944"></version>)",
                    "1.0.1.21944"},
          {R"(<version major="1" sub="1" build="21944"></version>)", "1.Y.1.21944"},
          {"<version></version>", "X.Y.Z.bbbb"},
          {"", "X.Y.Z.bbb"}})
        EXPECT_EQ(Make<ZPluginLogoView>("", tag)->GetText().ToNarrow(), text);
}

TEST_F(ZBasicViewsTest, ClicksOnTheLogoShowAndHideTheVersion)
{
    const auto logo = Make<ZPluginLogoView>("");
    Paint(*logo);
    EXPECT_TRUE(canvas->Ink().IsEmpty());
    logo->MouseDown({5, 5}, ZView::kMouseButton);
    Paint(*logo);
    EXPECT_FALSE(canvas->Ink().IsEmpty());
    logo->MouseDown({5, 5}, ZView::kMouseButton);
    EXPECT_FALSE(logo->ShowsVersion());
    EXPECT_FALSE(logo->OnTimer(-1)) << "no timer runs";
    logo->MouseDown({5, 5}, ZView::kMouseButton);
    logo->OnDetached();
    EXPECT_FALSE(logo->ShowsVersion()) << "without a window no timer would end it";
}

TEST_F(ZBasicViewsTest, GroupBoxesHaveOneLineOfLightBelow)
{
    const auto bevel = Make<ZBevelView>("radius=\"5\"", "", "width=\"100\" height=\"30\"");
    Paint(*bevel);
    EXPECT_GT(canvas->At(50, 30) & 0xffu, 0xf0u);
    EXPECT_LT(canvas->AlphaAt(90, 29), 24u);
}

TEST_F(ZBasicViewsTest, SmallGroupBoxesHaveSmallerCorners)
{
    const auto radiusOf = [&](const std::string& size) {
        return Make<ZBevelView>("radius=\"9\"", "", size)->GetCornerRadius();
    };
    EXPECT_EQ(radiusOf("width=\"100\" height=\"50\""), 5);
    EXPECT_EQ(radiusOf("width=\"100\" height=\"8\""), 4);
    EXPECT_EQ(radiusOf("width=\"6\" height=\"50\""), 3);
}

}  // namespace

}  // namespace orvane
