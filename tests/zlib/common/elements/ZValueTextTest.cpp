// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/elements/ZValueText.h"

#include "support/Test.h"

using namespace orvane;

TEST(ZValueTextTest, NumbersAreShortAndHaveTheirUnit)
{
    EXPECT_EQ(valueText(50.0f, ZElement::kMilliseconds), ZString("50 ms"));
    EXPECT_EQ(valueText(-12.504f, ZElement::kCents), ZString("-12.5 cents"));
    EXPECT_EQ(valueText(-0.001f, ZElement::kGeneric), ZString("0"));
    EXPECT_EQ(signedValueText(12.25f, ZElement::kCents), ZString("+12.25 cents"));
    EXPECT_EQ(signedValueText(-3.0f, ZElement::kCents), ZString("-3 cents"));
    EXPECT_EQ(signedValueText(0.001f, ZElement::kCents), ZString("0 cents"));
}
