#include "zlib/common/ZSystemServices.h"

#include "support/BoxRecorder.h"

#include <gtest/gtest.h>

namespace orvane
{

TEST(ZSystemServicesTest, AMessageBoxWithoutTextHasNoTitleEither)
{
    BoxRecorder recorder;
    EXPECT_TRUE(ShowMessageBox(1, false, "Title", "text"));
    EXPECT_TRUE(ShowMessageBox(2, false, "Title", ""));
    ASSERT_EQ(recorder.boxes.size(), 2u);
    EXPECT_EQ(recorder.boxes[0].kind, ZMessageBox::kWarning);
    EXPECT_EQ(recorder.boxes[0].title, "Title");
    EXPECT_EQ(recorder.boxes[0].text, "text");
    EXPECT_EQ(recorder.boxes[1].kind, ZMessageBox::kNotice);
    EXPECT_EQ(recorder.boxes[1].title, "");
}

TEST(ZSystemServicesTest, AKindThatTheTableDoesNotNameIsAnError)
{
    testing::internal::CaptureStderr();
    ShowMessageBox(17, false, "Title", "text");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Title (error): text\n");
}

TEST(ZSystemServicesDeathTest, ABoxCanEndTheProcess)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(ShowMessageBox(3, true, "Title", "the end"), testing::ExitedWithCode(255),
                "the end");
}

TEST(ZSystemServicesTest, ThisIsNoWindows)
{
    std::int32_t major = 7;
    std::int32_t minor = 8;
    EXPECT_FALSE(GetWindowsVersion(major, minor));
    EXPECT_EQ(major, 7);
    EXPECT_EQ(minor, 8);
    EXPECT_FALSE(IsWindowsMajor6() || IsWindowsMajor5());
}

}  // namespace orvane
