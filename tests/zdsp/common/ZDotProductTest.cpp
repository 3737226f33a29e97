// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZDotProduct.h"

#include "support/Standard.h"

#include <gtest/gtest.h>

using namespace orvane;

TEST(ZDotProductTest, TheFastestFormGivesTheSameAsThePlainOne)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<float> sample(-1.0f, 1.0f);
    std::vector<float> a(101);
    std::vector<float> b(100);
    for (auto* const samples : {&a, &b})
        std::generate(samples->begin(), samples->end(), [&] { return sample(random); });
    double exact = 0.0;
    for (int count = 0; count <= 100; ++count) {
        SCOPED_TRACE(count);
        // An address that no vector is aligned to.
        const double dot = ZDotProduct::Plain()(a.data() + 1, b.data(), count);
        EXPECT_NEAR(dot, exact, 1e-5);
        EXPECT_EQ(ZDotProduct::Fastest()(a.data() + 1, b.data(), count), dot);
        const auto i = static_cast<std::size_t>(std::min(count, 99));
        exact += static_cast<double>(a[i + 1]) * static_cast<double>(b[i]);
    }
}
