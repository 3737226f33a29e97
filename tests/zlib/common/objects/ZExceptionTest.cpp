// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZException.h"

#include "support/BoxRecorder.h"
#include "zlib/common/objects/ZMessageBox.h"

#include <gtest/gtest.h>

namespace orvane
{

TEST(ZExceptionTest, ReportShowsTextCodeAndAdvice)
{
    BoxRecorder recorder;
    ZException("Message not found").Report();
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].kind, ZMessageBox::kError);
    EXPECT_EQ(recorder.boxes[0].title, "An exception has occurred");
    EXPECT_EQ(recorder.boxes[0].text,
              "Message not found\n\rCode -1. You should close the plugin and remove it from any "
              "inserts before trying to use it again");
}

TEST(ZMessageBoxTest, ATextThatIsOpenIsNotShownTwice)
{
    BoxRecorder recorder;
    recorder.whileOpen = [] { ZMessageBox::Show(ZMessageBox::kWarning, "again", "same text"); };
    ZMessageBox::Show(ZMessageBox::kError, "first", "same text");
    EXPECT_EQ(recorder.boxes.size(), 1u);
    recorder.whileOpen = nullptr;
    ZMessageBox::Show(ZMessageBox::kError, "later", "same text");
    EXPECT_EQ(recorder.boxes.size(), 2u);
}

}  // namespace orvane
