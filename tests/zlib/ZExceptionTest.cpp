#include "zlib/common/ZException.h"
#include "zlib/common/ZMessageBox.h"

#include "support/BoxRecorder.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane
{

TEST(ZExceptionTest, KnowsItsTextCodeAndPlace)
{
    try {
        throw ZException(2, "Unable to allocate zfloat buffer.");
    } catch (const ZException& exception) {
        EXPECT_EQ(exception.GetCode(), 2);
        EXPECT_EQ(exception.GetMessage().ToNarrow(), "Unable to allocate zfloat buffer.");
        EXPECT_EQ(exception.GetFile().ToNarrow(), "tests/zlib/ZExceptionTest.cpp");
        EXPECT_GT(exception.GetLine(), 0);
    }
}

TEST(ZExceptionTest, ReportTellsTextCodeAndWhatToDo)
{
    BoxRecorder recorder;
    ZException(-1, "Message not found").Report();
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].kind, ZMessageBox::kError);
    EXPECT_EQ(recorder.boxes[0].title, "An exception has occurred");
    EXPECT_EQ(recorder.boxes[0].text,
              "Message not found\n\rCode -1. You should close the plugin and remove it from any "
              "inserts before trying to use it again");
}

TEST(ZMessageBoxTest, ATextThatIsOnShowIsNotShownTwice)
{
    BoxRecorder recorder;
    recorder.whileOpen = [] { ZMessageBox::Show(ZMessageBox::kWarning, "again", "same text"); };
    ZMessageBox::Show(ZMessageBox::kError, "first", "same text");
    EXPECT_EQ(recorder.boxes.size(), 1u);
    recorder.whileOpen = nullptr;
    ZMessageBox::Show(ZMessageBox::kError, "later", "same text");
    EXPECT_EQ(recorder.boxes.size(), 2u);
}

TEST(ZMessageBoxTest, WithoutPresenterABoxIsOneLineOnStandardError)
{
    testing::internal::CaptureStderr();
    ZMessageBox::Show(ZMessageBox::kError, "Title", "one\n\rtwo");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Title (error): one  two\n");
}

}  // namespace orvane
