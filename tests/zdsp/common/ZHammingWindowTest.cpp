// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZHammingWindow.h"

#include "support/Test.h"
#include "zdsp/common/Noise.h"
#include "zlib/common/objects/ZException.h"

using namespace orvane;

TEST(ZHammingWindowTest, IsSymmetricAndNormalisesByAnyNumberOfDivisions)
{
    const auto window = ZHammingWindow::Create(9);
    const float* const samples = window->Window().Data();
    const double expected[] = {0.08, 0.2147308807, 0.54, 0.8652691193, 1.0};
    for (std::uint32_t i = 0; i < 5; ++i) {
        EXPECT_NEAR(samples[i], expected[i], 1e-6) << i;
        EXPECT_NEAR(samples[8 - i], expected[i], 1e-6) << 8 - i;
    }
    EXPECT_EQ(ZHammingWindow::Create(1)->Window().Data()[0], 1.0f);
    EXPECT_THROW(std::ignore = ZHammingWindow::Create(0), ZException);
    const auto plain = ZHammingWindow::Create(5);
    double all = 0.0;
    for (std::uint32_t i = 0; i < 5; ++i)
        all += plain->Window().Data()[i];
    for (const std::uint32_t divisions : {6u, 0xFFFFFFFFu}) {
        const auto normalised = ZHammingWindow::Create(5);
        normalised->NormalizeSum(divisions);
        EXPECT_NEAR(normalised->Window().Data()[2], 1.0 / all, 1e-6) << divisions;
    }
    const auto normalised = ZHammingWindow::Create(5);
    normalised->NormalizePower(0);  // as one division: the first sample alone
    EXPECT_NEAR(normalised->Window().Data()[2], 1.0 / (0.08 * 0.08), 1e-3);
}

TEST(ZHammingWindowTest, UnapplyRestoresTheSignal)
{
    const auto plain = ZHammingWindow::Create(16);
    double sum = 0.0;
    double power = 0.0;
    for (const int i : {0, 4, 8, 12}) {
        sum += plain->Window().Data()[i];
        power += plain->Window().Data()[i] * plain->Window().Data()[i];
    }
    for (const bool isBySum : {true, false}) {
        const auto window = ZHammingWindow::Create(16);
        isBySum ? window->NormalizeSum(4) : window->NormalizePower(4);
        ZBuffer signal(16, "ZBuffer");
        fillWithNoise(signal, 1);
        ZBuffer windowed(16, "ZBuffer");
        ZBuffer back(16, "ZBuffer");
        window->ApplyTo(signal, windowed);
        window->UnapplyTo(windowed, back);
        for (std::uint32_t i = 0; i < 16; ++i) {
            const double factor = plain->Window().Data()[i] / (isBySum ? sum : power);
            EXPECT_NEAR(windowed.Data()[i], signal.Data()[i] * factor, 1e-6) << i;
            EXPECT_NEAR(back.Data()[i], signal.Data()[i], 1e-6) << i;
        }
        window->Apply(signal);
        EXPECT_EQ(signal.Data()[10], windowed.Data()[10]);
    }
}
