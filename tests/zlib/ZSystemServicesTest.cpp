#include "zlib/common/ZSystemServices.h"

#include <gtest/gtest.h>

namespace orvane
{

TEST(ZSystemServicesDeathTest, ABoxCanEndTheProcess)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(ShowMessageBox(3, true, "Title", "the end"), testing::ExitedWithCode(255),
                "the end");
}

}  // namespace orvane
