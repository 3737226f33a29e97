// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZFloatMode.h"

#include "support/Test.h"
#include "zdsp/common/ZVectorSupport.h"

#include <cfenv>

using namespace orvane;

namespace
{

// Half of the smallest normal number, computed at run time.
float halfOfTheSmallest()
{
    volatile float smallest = std::numeric_limits<float>::min();
    return smallest * 0.5f;
}

}  // namespace

TEST(ZFloatModeTest, FlushesDenormalsAndRestoresTheHostsMode)
{
    if (ZVectorSupport::ProcessorClass() == ZVectorSupport::kPlain)
        GTEST_SKIP() << "the mode is left alone";
    ASSERT_EQ(std::fesetround(FE_UPWARD), 0);
    std::feclearexcept(FE_ALL_EXCEPT);
    std::feraiseexcept(FE_OVERFLOW);
    {
        const ZFloatMode mode;
        EXPECT_EQ(halfOfTheSmallest(), 0.0f);
        volatile float third = 1.0f / 3.0f;  // 3 x it is 1 only when it rounds to the nearest
        EXPECT_EQ(third * 3.0f, 1.0f);
    }
    EXPECT_GT(halfOfTheSmallest(), 0.0f);
    EXPECT_EQ(std::fegetround(), FE_UPWARD);
    EXPECT_TRUE(std::fetestexcept(FE_OVERFLOW));
    std::fesetround(FE_TONEAREST);
    std::feclearexcept(FE_ALL_EXCEPT);
}
